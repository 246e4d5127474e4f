#include "Serialization/JsonWriter.h"

#include "Dom/JsonObject.h"
#include "Json/JsonNumber.h"
#include "Json/JsonSink.h"

#include <string_view>

FJsonTextWriter::FJsonTextWriter(FString& OutText, bool bInPretty)
	: Sink(MakeUnique<FJsonSink>(OutText))
	, bPretty(bInPretty)
{
}

FJsonTextWriter::~FJsonTextWriter() = default;

void FJsonTextWriter::BeginValue()
{
	if (Containers.IsEmpty())
	{
		check(!bRootWritten);
		bRootWritten = true;
		return;
	}
	FOpenContainer& Container = Containers.Last();
	check(Container.bObject == bNamed);
	if (!bNamed)
	{
		if (Container.bHasElements)
		{
			Sink->Put(u',');
		}
		NewLine(Containers.Num());
	}
	Container.bHasElements = true;
	bNamed = false;
}

void FJsonTextWriter::EndValue()
{
	Sink->Commit();
}

void FJsonTextWriter::NewLine(int32 Depth)
{
	if (bPretty)
	{
		Sink->Put(u'\n');
		Sink->PutRepeated(u'\t', Depth);
	}
}

void FJsonTextWriter::PutName(FStringView Name)
{
	Sink->PutQuoted(Name);
	Sink->Put(bPretty ? std::string_view(": ") : std::string_view(":"));
}

void FJsonTextWriter::WriteIdentifierPrefix(FStringView Name)
{
	check(!Containers.IsEmpty() && Containers.Last().bObject && !bNamed);
	if (Containers.Last().bHasElements)
	{
		Sink->Put(u',');
	}
	NewLine(Containers.Num());
	PutName(Name);
	bNamed = true;
	EndValue();
}

void FJsonTextWriter::Open(TCHAR Bracket, bool bObject)
{
	BeginValue();
	Sink->Put(Bracket);
	Containers.Add({bObject, false});
	bTooDeep |= Containers.Num() > JsonMaxDepth;
	EndValue();
}

void FJsonTextWriter::Shut(TCHAR Bracket, bool bObject)
{
	check(!Containers.IsEmpty() && Containers.Last().bObject == bObject && !bNamed);
	if (Containers.Pop().bHasElements)
	{
		NewLine(Containers.Num());
	}
	Sink->Put(Bracket);
	EndValue();
}

void FJsonTextWriter::WriteObjectStart()
{
	Open(u'{', true);
}

void FJsonTextWriter::WriteObjectStart(FStringView Name)
{
	WriteIdentifierPrefix(Name);
	WriteObjectStart();
}

void FJsonTextWriter::WriteObjectEnd()
{
	Shut(u'}', true);
}

void FJsonTextWriter::WriteArrayStart()
{
	Open(u'[', false);
}

void FJsonTextWriter::WriteArrayStart(FStringView Name)
{
	WriteIdentifierPrefix(Name);
	WriteArrayStart();
}

void FJsonTextWriter::WriteArrayEnd()
{
	Shut(u']', false);
}

void FJsonTextWriter::WriteNull()
{
	WriteRawJSONValue(TEXT("null"));
}

void FJsonTextWriter::WriteNull(FStringView Name)
{
	WriteRawJSONValue(Name, TEXT("null"));
}

void FJsonTextWriter::WriteRawJSONValue(FStringView Json)
{
	BeginValue();
	Sink->Put(Json);
	EndValue();
}

void FJsonTextWriter::WriteRawJSONValue(FStringView Name, FStringView Json)
{
	WriteIdentifierPrefix(Name);
	WriteRawJSONValue(Json);
}

void FJsonTextWriter::WriteValue(bool bValue)
{
	WriteRawJSONValue(bValue ? TEXT("true") : TEXT("false"));
}

template <typename T>
void FJsonTextWriter::PutNumber(T Number)
{
	ANSICHAR Text[JsonNumber::MaxChars];
	Sink->Put(std::string_view(Text, (SIZE_T)JsonNumber::Write(Number, Text)));
}

void FJsonTextWriter::WriteValue(double Value)
{
	BeginValue();
	PutNumber(Value);
	EndValue();
}

void FJsonTextWriter::WriteSigned(int64 Value)
{
	BeginValue();
	PutNumber(Value);
	EndValue();
}

void FJsonTextWriter::WriteUnsigned(uint64 Value)
{
	BeginValue();
	PutNumber(Value);
	EndValue();
}

void FJsonTextWriter::WriteValue(FStringView Text)
{
	BeginValue();
	Sink->PutQuoted(Text);
	EndValue();
}

void FJsonTextWriter::WriteValue(const FJsonValue& Value)
{
	BeginValue();
	PutTree(Value, Containers.Num() + 1);
	EndValue();
}

void FJsonTextWriter::WriteValue(const FJsonObject& Object)
{
	BeginValue();
	PutMembers(Object, Containers.Num() + 1);
	EndValue();
}

void FJsonTextWriter::WriteValue(const TArray<TSharedPtr<FJsonValue>>& Array)
{
	BeginValue();
	PutElements(Array, Containers.Num() + 1);
	EndValue();
}

void FJsonTextWriter::PutTree(const TSharedPtr<FJsonValue>& Value, int32 Depth)
{
	if (!Value)
	{
		Sink->Put(std::string_view("null"));
		return;
	}
	PutTree(*Value, Depth);
}

void FJsonTextWriter::PutTree(const FJsonValue& Value, int32 Depth)
{
	using EForm = FJsonValue::EForm;
	switch (Value.Form)
	{
	case EForm::Boolean:
		return Sink->Put(Value.bValue ? std::string_view("true") : std::string_view("false"));
	case EForm::Double:
		return PutNumber(Value.Double);
	case EForm::Signed:
		return PutNumber(Value.Signed);
	case EForm::Unsigned:
		return PutNumber(Value.Unsigned);
	case EForm::NumberText:
		return Sink->Put(FStringView(Value.Text));
	case EForm::Text:
		return Sink->PutQuoted(Value.Text);
	case EForm::Utf8:
		return Sink->PutQuotedUtf8(std::string_view(Value.Utf8, Value.Utf8Bytes));
	case EForm::Array:
		return PutElements(Value.Array, Depth);
	case EForm::Object:
		if (Value.Object)
		{
			return PutMembers(*Value.Object, Depth);
		}
		[[fallthrough]];
	default:
		return Sink->Put(std::string_view("null"));
	}
}

void FJsonTextWriter::PutElements(const TArray<TSharedPtr<FJsonValue>>& Array, int32 Depth)
{
	Sink->Put(u'[');
	bTooDeep |= Depth > JsonMaxDepth;
	bool bFirst = true;
	for (const TSharedPtr<FJsonValue>& Element : Array)
	{
		if (bTooDeep)
		{
			break;
		}
		if (!Exchange(bFirst, false))
		{
			Sink->Put(u',');
		}
		NewLine(Depth);
		PutTree(Element, Depth + 1);
	}
	if (!bFirst)
	{
		NewLine(Depth - 1);
	}
	Sink->Put(u']');
}

void FJsonTextWriter::PutMembers(const FJsonObject& Object, int32 Depth)
{
	Sink->Put(u'{');
	bTooDeep |= Depth > JsonMaxDepth;
	bool bFirst = true;
	for (const FJsonMember& Member : Object.Values)
	{
		if (bTooDeep)
		{
			break;
		}
		if (!Exchange(bFirst, false))
		{
			Sink->Put(u',');
		}
		NewLine(Depth);
		PutName(Member.Key);
		PutTree(Member.Value, Depth + 1);
	}
	if (!bFirst)
	{
		NewLine(Depth - 1);
	}
	Sink->Put(u'}');
}

bool FJsonTextWriter::Close()
{
	return bRootWritten && Containers.IsEmpty() && !bNamed && !bTooDeep;
}
