#pragma once

/**
 * Deletes a directory with all it holds, whatever the names in it are; symbolic links are deleted, never followed. What
 * can't be deleted stays, and so do the directories above it. @return whether everything is gone; else `errno` is set.
 */
bool DeleteTree(const char* Directory);
