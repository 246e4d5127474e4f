#pragma once

#include "Interfaces/IHttpBase.h"
#include "Templates/SharedPointer.h"

/** The answer to a request. */
class IHttpResponse : public IHttpBase
{
public:
	/** The status, such as 200. */
	virtual int32 GetResponseCode() const = 0;
	/** The body as text; empty when the body went to the request's own stream. */
	virtual FString GetContentAsString() const = 0;
};

using FHttpResponsePtr = TSharedPtr<IHttpResponse>;
