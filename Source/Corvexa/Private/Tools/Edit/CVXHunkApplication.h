#pragma once

#include "Tools/Edit/CVXPatch.h"

/**
 * Applies a file's hunks to its lines, each exactly where it says. Only case and a CR at the end of a line may differ;
 * of these the line takes the patch's case and keeps its own CR. Any thread.
 * @param Lines without their line feeds; nobody's business any more when it fails. @param OutError what didn't match.
 */
bool ApplyHunks(TArray<FString>& Lines, const FCVXFilePatch& File, FString& OutError);

/**
 * Applies a file's hunks to its text. Untouched lines keep their ends. New ones come with those of the patch, or where
 * the patch has no CR at all, with those of the file. The file's final line end stays unless the patch tells of it.
 */
bool ApplyHunksToText(FString& InOutText, const FCVXFilePatch& File, FString& OutError);

/** The text of a new file: all added lines. */
FString MakeNewText(const FCVXFilePatch& File);
