#include "Agent/Context/CVXCallArguments.h"

#include "Core/CVXJsonCursor.h"

FString CVXCallArguments::GetPath(const FString& ArgumentsJson)
{
	FString FilePath;
	FString Path;
	FCVXJsonCursor Cursor(ArgumentsJson);
	const bool bRead = Cursor.ReadObject(
		[&](FStringView Name)
		{
			if (!Cursor.IsAtString())
			{
				return Cursor.SkipValue();
			}
			if (Name.Equals(TEXT("file_path"), ESearchCase::IgnoreCase))
			{
				return Cursor.ReadString(FilePath);
			}
			return Name.Equals(TEXT("path"), ESearchCase::IgnoreCase) ? Cursor.ReadString(Path) : Cursor.SkipValue();
		});
	if (!bRead || !Cursor.IsAtEnd())
	{
		return FString();
	}
	return FilePath.IsEmpty() ? Path : FilePath;
}

bool CVXCallArguments::IsFileWrite(const FString& ToolName)
{
	return ToolName == TEXT("write_file") || ToolName == TEXT("edit_file") || ToolName == TEXT("apply_patch");
}
