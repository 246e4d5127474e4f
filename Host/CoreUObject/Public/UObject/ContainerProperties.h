#pragma once

#include "Containers/Array.h"
#include "Containers/ScriptSet.h"
#include "UObject/Property.h"

/** What the three containers share: a default of nothing, and import in steps. */
class FContainerProperty : public FProperty
{
public:
	using FProperty::FProperty;

protected:
	bool ImportsInSteps() const override { return true; }
};

class FArrayProperty : public FContainerProperty
{
	DECLARE_FIELD(FArrayProperty, FProperty)

	FArrayProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags = RF_NoFlags);
	~FArrayProperty() override;

	/** Gives the property of the elements; once. */
	void AddCppProperty(FProperty* Property) override;
	void LinkType() override;
	bool SameType(const FProperty* Other) const override;
	bool ContainsObjectReference() const override { return Inner->ContainsObjectReference(); }
	void CollectReferences(void* Data, FReferenceCollector& Collector) const override;
	void GetInnerFields(TArray<FField*>& OutFields) const override { OutFields.Add(Inner); }

	FProperty* Inner = nullptr;

protected:
	DECLARE_PROPERTY_VALUE_LIFE()
	DECLARE_PROPERTY_VALUE_FORM()
};

class FSetProperty : public FContainerProperty
{
	DECLARE_FIELD(FSetProperty, FProperty)

	FSetProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags = RF_NoFlags);
	~FSetProperty() override;

	/** Gives the property of the elements; once. */
	void AddCppProperty(FProperty* Property) override;
	void LinkType() override;
	bool SameType(const FProperty* Other) const override;
	bool ContainsObjectReference() const override { return ElementProp->ContainsObjectReference(); }
	void CollectReferences(void* Data, FReferenceCollector& Collector) const override;
	void GetInnerFields(TArray<FField*>& OutFields) const override { OutFields.Add(ElementProp); }
	FProperty* GetElementProperty() const { return ElementProp; }

	FProperty* ElementProp = nullptr;
	FScriptSetLayout SetLayout{};

protected:
	DECLARE_PROPERTY_VALUE_LIFE()
	DECLARE_PROPERTY_VALUE_FORM()
};

/** Where the value lies in a pair, and the set of pairs. */
struct FScriptMapLayout
{
	int32 ValueOffset = 0;
	FScriptSetLayout SetLayout{};
};

class FMapProperty : public FContainerProperty
{
	DECLARE_FIELD(FMapProperty, FProperty)

	FMapProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags = RF_NoFlags);
	~FMapProperty() override;

	/** Gives the property of the keys, then that of the values. */
	void AddCppProperty(FProperty* Property) override;
	void LinkType() override;
	bool SameType(const FProperty* Other) const override;
	bool ContainsObjectReference() const override;
	void CollectReferences(void* Data, FReferenceCollector& Collector) const override;
	void GetInnerFields(TArray<FField*>& OutFields) const override;
	FProperty* GetKeyProperty() const { return KeyProp; }
	FProperty* GetValueProperty() const { return ValueProp; }

	FProperty* KeyProp = nullptr;
	FProperty* ValueProp = nullptr;
	FScriptMapLayout MapLayout;

protected:
	DECLARE_PROPERTY_VALUE_LIFE()
	DECLARE_PROPERTY_VALUE_FORM()
};
