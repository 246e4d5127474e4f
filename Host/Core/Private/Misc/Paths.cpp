#include "Misc/Paths.h"

#include "HAL/PlatformFileManager.h"
#include "Internationalization/Text.h"
#include "Misc/Guid.h"

#include <climits>
#include <unistd.h>

namespace
{
bool IsSlash(TCHAR Char)
{
	return Char == u'/' || Char == u'\\';
}

/** The index behind the last slash. */
int32 LeafStart(const FString& Path)
{
	int32 Index = Path.Len();
	while (Index > 0 && !IsSlash(Path[Index - 1]))
	{
		--Index;
	}
	return Index;
}

/** The index of the last dot of the last part, or INDEX_NONE. */
int32 DotIndex(const FString& Path)
{
	int32 Dot = INDEX_NONE;
	Path.FindLastChar(u'.', Dot);
	return Dot >= LeafStart(Path) ? Dot : INDEX_NONE;
}

FString WorkingDirectory()
{
	char Buffer[PATH_MAX];
	return ::getcwd(Buffer, sizeof(Buffer)) ? FString(Buffer) : FString(TEXT("/"));
}

/** How `..` above the start of a path is taken. */
enum class EAboveStart
{
	Fails,
	StaysAtStart
};

bool Collapse(FString& InOutPath, EAboveStart AboveStart)
{
	const bool bAbsolute = !InOutPath.IsEmpty() && IsSlash(InOutPath[0]);
	const bool bDirectory = InOutPath.Len() > 1 && IsSlash(InOutPath[InOutPath.Len() - 1]);
	const TCHAR* Slashes[] = {TEXT("/"), TEXT("\\")};
	TArray<FString> Parts;
	InOutPath.ParseIntoArray(Parts, Slashes, 2, true);
	TArray<FString> Kept;
	for (FString& Part : Parts)
	{
		if (Part.Equals(TEXT(".")))
		{
			continue;
		}
		if (!Part.Equals(TEXT("..")))
		{
			Kept.Add(MoveTemp(Part));
			continue;
		}
		if (!Kept.IsEmpty())
		{
			Kept.Pop();
		}
		else if (AboveStart == EAboveStart::Fails)
		{
			return false;
		}
	}
	InOutPath = (bAbsolute ? TEXT("/") : TEXT("")) + FString::Join(Kept, TEXT("/"));
	if (bDirectory && !Kept.IsEmpty())
	{
		InOutPath += u'/';
	}
	return true;
}
} // namespace

FString FPaths::ConvertRelativePathToFull(const FString& Path)
{
	return ConvertRelativePathToFull(IsRelative(Path) ? WorkingDirectory() : FString(), Path);
}

FString FPaths::ConvertRelativePathToFull(const FString& BasePath, const FString& Path)
{
	FString Full = IsRelative(Path) ? Combine(BasePath, Path) : Path;
	NormalizeFilename(Full);
	Collapse(Full, EAboveStart::StaysAtStart);
	return Full;
}

bool FPaths::CollapseRelativeDirectories(FString& InOutPath)
{
	return Collapse(InOutPath, EAboveStart::Fails);
}

void FPaths::NormalizeFilename(FString& InOutPath)
{
	InOutPath.ReplaceCharInline(u'\\', u'/', ESearchCase::CaseSensitive);
}

void FPaths::NormalizeDirectoryName(FString& InOutPath)
{
	NormalizeFilename(InOutPath);
	while (InOutPath.Len() > 1 && InOutPath.EndsWith(TEXT("/")) && !InOutPath.EndsWith(TEXT(":/")))
	{
		InOutPath.LeftChopInline(1, EAllowShrinking::No);
	}
}

void FPaths::RemoveDuplicateSlashes(FString& InOutPath)
{
	FString Result;
	Result.Reserve(InOutPath.Len());
	for (const TCHAR Char : InOutPath)
	{
		if (Char != u'/' || Result.IsEmpty() || Result[Result.Len() - 1] != u'/')
		{
			Result += Char;
		}
	}
	InOutPath = MoveTemp(Result);
}

void FPaths::MakeStandardFilename(FString& InOutPath)
{
	InOutPath = ConvertRelativePathToFull(InOutPath);
}

bool FPaths::MakePathRelativeTo(FString& InOutPath, const TCHAR* RelativeTo)
{
	TArray<FString> Target;
	TArray<FString> Source;
	const FString FullTarget = ConvertRelativePathToFull(InOutPath);
	FullTarget.ParseIntoArray(Target, TEXT("/"), true);
	GetPath(ConvertRelativePathToFull(RelativeTo)).ParseIntoArray(Source, TEXT("/"), true);
	int32 Common = 0;
	while (Common < Target.Num() && Common < Source.Num() && Target[Common].Equals(Source[Common]))
	{
		++Common;
	}
	FString Result;
	for (int32 Index = Common; Index < Source.Num(); ++Index)
	{
		Result += TEXT("../");
	}
	for (int32 Index = Common; Index < Target.Num(); ++Index)
	{
		Result += Target[Index];
		Result += Index + 1 < Target.Num() || FullTarget.EndsWith(TEXT("/")) ? TEXT("/") : TEXT("");
	}
	InOutPath = MoveTemp(Result);
	return true;
}

FString FPaths::GetExtension(const FString& Path, bool bIncludeDot)
{
	const int32 Dot = DotIndex(Path);
	return Dot == INDEX_NONE ? FString() : Path.Mid(bIncludeDot ? Dot : Dot + 1);
}

FString FPaths::GetCleanFilename(const FString& Path)
{
	return Path.Mid(LeafStart(Path));
}

FString FPaths::GetBaseFilename(const FString& Path, bool bRemovePath)
{
	const int32 Dot = DotIndex(Path);
	const int32 Start = bRemovePath ? LeafStart(Path) : 0;
	return Path.Mid(Start, (Dot == INDEX_NONE ? Path.Len() : Dot) - Start);
}

FString FPaths::GetPath(const FString& Path)
{
	const int32 Start = LeafStart(Path);
	return Path.Left(Start > 0 ? Start - 1 : 0);
}

FString FPaths::GetPathLeaf(const FString& Path)
{
	FString Trimmed = Path;
	NormalizeDirectoryName(Trimmed);
	return GetCleanFilename(Trimmed);
}

FString FPaths::ChangeExtension(const FString& Path, const FString& NewExtension)
{
	return DotIndex(Path) == INDEX_NONE ? Path : SetExtension(Path, NewExtension);
}

FString FPaths::SetExtension(const FString& Path, const FString& NewExtension)
{
	const FString Base = GetBaseFilename(Path, false);
	const bool bNeedsDot = !NewExtension.IsEmpty() && !NewExtension.StartsWith(TEXT("."));
	return Base + (bNeedsDot ? TEXT(".") : TEXT("")) + NewExtension;
}

void FPaths::Split(const FString& Path, FString& OutPath, FString& OutName, FString& OutExtension)
{
	OutPath = GetPath(Path);
	OutName = GetBaseFilename(Path);
	OutExtension = GetExtension(Path);
}

bool FPaths::IsRelative(const FString& Path)
{
	const bool bRooted = !Path.IsEmpty() && IsSlash(Path[0]);
	const bool bDrive = Path.Len() >= 2 && Path[1] == u':' && FChar::IsAlpha(Path[0]);
	return !bRooted && !bDrive;
}

bool FPaths::IsDrive(const FString& Path)
{
	return Path.Equals(TEXT("/")) || (Path.Len() >= 2 && Path.Len() <= 3 && Path[1] == u':');
}

bool FPaths::IsUnderDirectory(const FString& Path, const FString& Directory)
{
	FString Parent = ConvertRelativePathToFull(Directory);
	FString Child = ConvertRelativePathToFull(Path);
	Parent += Parent.EndsWith(TEXT("/")) ? TEXT("") : TEXT("/");
	Child += Child.EndsWith(TEXT("/")) ? TEXT("") : TEXT("/");
	return Child.StartsWith(Parent, ESearchCase::CaseSensitive);
}

bool FPaths::IsSamePath(const FString& A, const FString& B)
{
	FString FullA = ConvertRelativePathToFull(A);
	FString FullB = ConvertRelativePathToFull(B);
	NormalizeDirectoryName(FullA);
	NormalizeDirectoryName(FullB);
	return FullA.Equals(FullB);
}

bool FPaths::FileExists(const FString& Path)
{
	return FPlatformFileManager::Get().GetPlatformFile().FileExists(*Path);
}

bool FPaths::DirectoryExists(const FString& Path)
{
	return FPlatformFileManager::Get().GetPlatformFile().DirectoryExists(*Path);
}

FString FPaths::MakeValidFileName(const FString& Text, TCHAR Replacement)
{
	constexpr FStringView Forbidden = TEXTVIEW("/?:&\\*\"<>|%#@^ ");
	FString Result;
	for (const TCHAR Char : Text)
	{
		int32 Found = INDEX_NONE;
		if (!FChar::IsControl(Char) && !Forbidden.FindChar(Char, Found))
		{
			Result += Char;
		}
		else if (Replacement != 0)
		{
			Result += Replacement;
		}
	}
	return Result;
}

bool FPaths::ValidatePath(const FString& Path, FText* OutReason)
{
	constexpr FStringView Forbidden = TEXTVIEW("?*|<>\"");
	for (int32 Index = 0; Index < Path.Len(); ++Index)
	{
		int32 Found = INDEX_NONE;
		const bool bDriveColon = Path[Index] == u':' && Index == 1;
		if (FChar::IsControl(Path[Index]) || Forbidden.FindChar(Path[Index], Found) ||
			(Path[Index] == u':' && !bDriveColon))
		{
			if (OutReason)
			{
				*OutReason = FText::FromString(
					FString::Printf(TEXT("The path may not contain the character %d."), (int32)Path[Index]));
			}
			return false;
		}
	}
	return true;
}

FString FPaths::CreateTempFilename(const TCHAR* Directory, const TCHAR* Prefix, const TCHAR* Extension)
{
	return Combine(Directory, FString(Prefix) + FGuid::NewGuid().ToString() + Extension);
}
