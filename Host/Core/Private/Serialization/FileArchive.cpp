#include "FileArchive.h"

namespace
{
constexpr int32 BufferBytes = 64 * 1024;
}

FFileReader::FFileReader(IFileHandle* InHandle, const TCHAR* InName)
	: Handle(InHandle)
	, Name(InName)
	, Size(InHandle->Size())
{
	SetIsLoading(true);
	SetIsPersistent(true);
}

void FFileReader::Serialize(void* Data, int64 Num)
{
	uint8* Dest = (uint8*)Data;
	if (Num < 0 || IsError() || Num > Size - Position || !ReadBlock(Dest, Num))
	{
		SetError();
		FMemory::Memzero(Data, Num > 0 ? (SIZE_T)Num : 0);
		return;
	}
	Position += Num;
}

bool FFileReader::ReadBlock(uint8* Dest, int64 Num)
{
	const int64 Offset = Position - BufferStart;
	if (Offset >= 0 && Offset + Num <= Buffer.Num())
	{
		FMemory::Memcpy(Dest, Buffer.GetData() + Offset, (SIZE_T)Num);
		return true;
	}
	if (!Handle->Seek(Position))
	{
		return false;
	}
	if (Num >= BufferBytes)
	{
		return Handle->Read(Dest, Num);
	}
	BufferStart = Position;
	Buffer.SetNumUninitialized((int32)std::min<int64>(BufferBytes, Size - Position));
	if (!Handle->Read(Buffer.GetData(), Buffer.Num()))
	{
		Buffer.Reset();
		return false;
	}
	FMemory::Memcpy(Dest, Buffer.GetData(), (SIZE_T)Num);
	return true;
}

void FFileReader::Seek(int64 InPosition)
{
	if (InPosition < 0 || InPosition > Size)
	{
		SetError();
		return;
	}
	Position = InPosition;
}

FFileWriter::FFileWriter(IFileHandle* InHandle, const TCHAR* InName)
	: Handle(InHandle)
	, Name(InName)
	, Position(InHandle->Tell())
{
	SetIsSaving(true);
	SetIsPersistent(true);
}

FFileWriter::~FFileWriter()
{
	(void)Close();
}

void FFileWriter::Serialize(void* Data, int64 Num)
{
	if (Num < 0 || IsError() || !Handle)
	{
		SetError();
		return;
	}
	if (Buffer.Num() + Num > BufferBytes)
	{
		FFileWriter::Flush();
	}
	if (Num < BufferBytes)
	{
		Buffer.Append((const uint8*)Data, (int32)Num);
	}
	else if (!Handle->Write((const uint8*)Data, Num))
	{
		SetError();
	}
	Position += Num;
}

void FFileWriter::Flush()
{
	if (Handle && !Handle->Write(Buffer.GetData(), Buffer.Num()))
	{
		SetError();
	}
	Buffer.Reset();
}

bool FFileWriter::Close()
{
	FFileWriter::Flush();
	Handle.Reset();
	return !IsError();
}

int64 FFileWriter::TotalSize()
{
	FFileWriter::Flush();
	return Handle ? Handle->Size() : INDEX_NONE;
}

void FFileWriter::Seek(int64 InPosition)
{
	FFileWriter::Flush();
	if (!Handle || !Handle->Seek(InPosition))
	{
		SetError();
		return;
	}
	Position = InPosition;
}
