#pragma once

class FString;

/**
 * Cleans a directory of what misdirected shell commands leave there: files named like a device, which the desktop can't
 * delete, and directories named like an option. Only exact names count. Each removal is logged as a warning.
 */
namespace CVXReservedNames
{
/** @param Directory absolute. A failure leaves the thing where it is. */
void CleanUp(const FString& Directory);
} // namespace CVXReservedNames
