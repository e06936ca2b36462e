#pragma once

#include "foundation/McString.h"
#include "foundation/export.h"
#include "model/GroupPool.h"

/// A named value that belongs to a topology as a whole, such as a data item of an SDF record. Every kind that a text
/// format can carry converts to and from text.
class TARNEX_API MolData : public tarnex::Pooled {
public:
    explicit MolData(char const* dataName) : name(dataName) {}
    virtual ~MolData();
    MolData& operator=(MolData const&) = delete;

    /// A new object of the same class with the same name and value, owned by the caller.
    virtual MolData* duplicate() const = 0;
    /// Throws `McException` for a class that has no conversion.
    virtual void getValueAsString(McString& out) const;
    /// Text that is no value of the class gives 0. Throws `McException` for a class that has no conversion.
    virtual void setValueFromString(char const* text);

    /// The key under which a topology keeps the datum.
    char const* getName() const { return name; }

protected:
    MolData(MolData const&) = default;

    McString name;
};

template <class T>
class TARNEX_API TypedMolData : public MolData {
public:
    template <class V>
    TypedMolData(char const* dataName, V const& v) : MolData(dataName), value(v) {}

    virtual T const& getValue() const { return value; }
    virtual void setValue(T const& v) { value = v; }

protected:
    T value;
};

extern template class TypedMolData<int>;
extern template class TypedMolData<float>;
extern template class TypedMolData<McString>;

class TARNEX_API MolDataInt : public TypedMolData<int> {
public:
    MolDataInt(char const* dataName, int v) : TypedMolData(dataName, v) {}
    ~MolDataInt() override;
    MolDataInt* duplicate() const override;
    void getValueAsString(McString& out) const override;
    void setValueFromString(char const* text) override;
};

/// Its text has six places.
class TARNEX_API MolDataFloat : public TypedMolData<float> {
public:
    MolDataFloat(char const* dataName, float v) : TypedMolData(dataName, v) {}
    ~MolDataFloat() override;
    MolDataFloat* duplicate() const override;
    void getValueAsString(McString& out) const override;
    void setValueFromString(char const* text) override;
};

/// The text may hold line ends.
class TARNEX_API MolDataString : public TypedMolData<McString> {
public:
    MolDataString(char const* dataName, McString const& v) : TypedMolData(dataName, v) {}
    MolDataString(char const* dataName, char const* v) : TypedMolData(dataName, v) {}
    ~MolDataString() override;
    MolDataString* duplicate() const override;
    void getValueAsString(McString& out) const override;
    void setValueFromString(char const* text) override;
};
