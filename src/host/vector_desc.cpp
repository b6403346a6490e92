// Descriptions of the arrays that callers own.
#include "uxtree/host/vector_desc.h"

UXVectorDesc::UXVectorDesc() : element(Element::kNone), array(nullptr) {}
UXVectorDesc::UXVectorDesc(CArray<bool, bool>& a) : element(Element::kBool), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<char, char>& a) : element(Element::kChar), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<unsigned char, unsigned char>& a)
    : element(Element::kUChar), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<short, short>& a) : element(Element::kShort), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<unsigned short, unsigned short>& a)
    : element(Element::kUShort), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<int, int>& a) : element(Element::kInt), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<unsigned int, unsigned int>& a)
    : element(Element::kUInt), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<std::int64_t, std::int64_t>& a)
    : element(Element::kInt64), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<std::uint64_t, std::uint64_t>& a)
    : element(Element::kUInt64), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<float, float>& a) : element(Element::kFloat), array(&a) {}
UXVectorDesc::UXVectorDesc(CArray<double, double>& a) : element(Element::kDouble), array(&a) {}
UXVectorDesc::UXVectorDesc(CWBOStringArray& a) : element(Element::kText), array(&a) {}
