#pragma once

struct FCVXProviderRequest;

/** Tells in the log what a request holds. */
namespace CVXRequestLog
{
/** A count of the messages by role, and each message when the log is verbose. */
void Write(const FCVXProviderRequest& Request);
} // namespace CVXRequestLog
