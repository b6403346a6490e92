// Access to the names of a format by number, over a small format of its own.
#include "import/n42_names.h"

#include <string>

#include <gtest/gtest.h>

namespace {

enum ShapeId : int { kCircle = 1, kSquare = 2, kBox = 3, kNameless = 4 };
using Shapes = ux::CQXMLFileAccess<ShapeId, 0>;

// Knows tags with a prefix, too.
class PrefixedShapes : public Shapes {
public:
    bool NormalizeTag(CStringUTF8& tag) override {
        const int colon = tag.Find(':');
        if (colon < 0) return false;
        tag = tag.Mid(colon + 1);
        return true;
    }
};

int id_of(Shapes& shapes, const char* tag) {
    ShapeId id = kNameless;
    return shapes.GetID(tag, id) ? id : -1;
}

}  // namespace

template <>
const Shapes::IDNAME Shapes::IDSNAMES[] = {
    {"circle", kCircle}, {"square", kSquare}, {"square", kBox}, {nullptr, 0}};

TEST(CQXMLFileAccess, LeadsFromNumbersToNamesAndBack) {
    Shapes shapes;
    for (int round = 0; round < 2; ++round) {  // the second time from what it remembers
        EXPECT_STREQ(shapes.GetName(kCircle), "circle");
        EXPECT_STREQ(shapes.GetName(kBox), "square");
        EXPECT_STREQ(shapes.GetName(kNameless), "");
        EXPECT_EQ(id_of(shapes, "circle"), kCircle);
        EXPECT_EQ(id_of(shapes, "square"), kSquare);
        EXPECT_EQ(id_of(shapes, "Circle"), -1);
        EXPECT_EQ(id_of(shapes, "x:circle"), -1);
        EXPECT_EQ(id_of(shapes, ""), -1);
    }
}

TEST(CQXMLFileAccess, AsksTheTableAgainForARewrittenTag) {
    PrefixedShapes shapes;
    EXPECT_EQ(id_of(shapes, "x:circle"), kCircle);
    EXPECT_EQ(id_of(shapes, "x:y:circle"), -1);
    EXPECT_EQ(id_of(shapes, "circle"), kCircle);
}
