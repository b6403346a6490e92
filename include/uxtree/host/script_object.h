// Objects of the script language, and the arrays behind them.
#pragma once

#include <type_traits>

#include "uxtree/host/array.h"
#include "uxtree/host/export.h"

// Type codes of the script language's arrays.
inline constexpr unsigned int kUXTypeBoolVector = 0x10002;    // CArray<bool,bool>
inline constexpr unsigned int kUXTypeIntVector = 0x10008;     // CArray<int,int>
inline constexpr unsigned int kUXTypeDoubleVector = 0x1000B;  // CArray<double,double>
inline constexpr unsigned int kUXTypeStringArray = 0x1001B;   // CWBOStringArray

// Base of everything that the script language passes.
class UXHOST_API UXScriptObject {
public:
    UXScriptObject() = default;
    UXScriptObject(const UXScriptObject&) = default;
    UXScriptObject(UXScriptObject&&) noexcept = default;
    UXScriptObject& operator=(const UXScriptObject&) = default;
    UXScriptObject& operator=(UXScriptObject&&) noexcept = default;
    virtual ~UXScriptObject();
    virtual int IsValid();
    // The object's own array when it is of the wanted type, else null; there is no conversion.
    virtual void* GetInternalData(unsigned int typeCode);
};

// The embedded host's script array: owns its array and answers its own type code only.
template <class Array>
class UXScriptArray : public UXScriptObject {
public:
    UXScriptArray() = default;
    explicit UXScriptArray(const Array& initial) : array_(initial) {}
    Array& array() { return array_; }
    const Array& array() const { return array_; }
    int IsValid() override { return 1; }
    void* GetInternalData(unsigned int typeCode) override {
        return typeCode == TypeCode() ? static_cast<void*>(&array_) : nullptr;
    }

private:
    static constexpr unsigned int TypeCode() {
        if constexpr (std::is_same_v<Array, CArray<bool, bool>>) return kUXTypeBoolVector;
        if constexpr (std::is_same_v<Array, CArray<int, int>>) return kUXTypeIntVector;
        if constexpr (std::is_same_v<Array, CArray<double, double>>) return kUXTypeDoubleVector;
        if constexpr (std::is_same_v<Array, CWBOStringArray>) return kUXTypeStringArray;
        return 0;
    }

    Array array_;
};
