#pragma once

#include "UObject/Object.h"

/** The outermost object: `/Script/Engine` for what a module brings, `/Game/Things/Chair` for an asset's file. Game
 * thread. */
class UPackage : public UObject
{
	DECLARE_REFLECTED_CLASS(UPackage, UObject)

	UPackage() = default;

	/** Whether it holds changes that no file has. */
	bool IsDirty() const { return bDirty; }
	void SetDirtyFlag(bool bIsDirty) { bDirty = bIsDirty; }
	bool IsFullyLoaded() const { return true; }
	/** The package that objects of no package live in. */
	static UPackage* GetTransient();

private:
	bool bDirty = false;
};

UPackage* GetTransientPackage();
