// A description of an array owned by the caller, for transfers of whole vectors.
#pragma once

#include <cstdint>

#include "uxtree/host/array.h"
#include "uxtree/host/export.h"

// Element type and address of an array owned by the caller.
struct UXHOST_API UXVectorDesc {
    enum class Element {
        kNone,
        kBool,
        kChar,
        kUChar,
        kShort,
        kUShort,
        kInt,
        kUInt,
        kInt64,
        kUInt64,
        kFloat,
        kDouble,
        kText
    };
    UXVectorDesc();
    UXVectorDesc(CArray<bool, bool>& array);
    UXVectorDesc(CArray<char, char>& array);
    UXVectorDesc(CArray<unsigned char, unsigned char>& array);
    UXVectorDesc(CArray<short, short>& array);
    UXVectorDesc(CArray<unsigned short, unsigned short>& array);
    UXVectorDesc(CArray<int, int>& array);
    UXVectorDesc(CArray<unsigned int, unsigned int>& array);
    UXVectorDesc(CArray<std::int64_t, std::int64_t>& array);
    UXVectorDesc(CArray<std::uint64_t, std::uint64_t>& array);
    UXVectorDesc(CArray<float, float>& array);
    UXVectorDesc(CArray<double, double>& array);
    UXVectorDesc(CWBOStringArray& array);
    Element element;
    void* array;
};
