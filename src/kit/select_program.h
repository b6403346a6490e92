// A selection as it was compiled.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "uxtree/kit/select.h"

namespace uxkit {

enum class Axis {
    kSelf,
    kParent,
    kChild,
    kDescendant,        // what "//name" means: children of the nodes and of all below
    kDescendantOrSelf,  // what "//" means before an attribute or text()
    kAttribute,
    kText,
};

struct Expr;

struct Step {
    Axis axis = Axis::kSelf;
    int name = -1;  // in Program::names; -1 is "*"
    std::vector<Expr> predicates;
    bool usesPosition = false;  // some predicate asks where a node stands among the others
    bool usesLast = false;      // and how many there are
    // Of a "//" in front of more steps: without an index the order is lost where its nodes lie
    // within each other.
    bool mustBeApart = false;
};

struct Path {
    bool absolute = false;
    std::vector<Step> steps;
    // Inside a predicate:
    bool isShared = false;  // several nodes may ask for the same part of the tree: remembered there
    bool isDeep = false;    // has a "//"
    std::size_t site = 0;   // its number among the paths of the program
};

enum class Op { kEqual, kUnequal, kLess, kLessOrEqual, kGreater, kGreaterOrEqual };
enum class Type { kBoolean, kNumber, kText, kNodes };

struct Expr {
    enum class Kind {
        kOr,          // operands
        kAnd,         // operands
        kCompare,     // operands[0] op operands[1]
        kNot,         // operands[0]
        kTruth,       // boolean(operands[0])
        kConstant,    // true() and false(): number
        kContains,    // operands[0], a path or a literal, and text
        kStartsWith,  // the same
        kSum,         // operands with the signs of operators, '+' or '-'
        kProduct,     // operands with '*', '/' or '%'
        kNegation,    // -operands[0]
        kNumber,      // number
        kToNumber,    // number(operands[0])
        kPosition,
        kLast,
        kCount,    // count(path)
        kLiteral,  // text
        kPath,     // path
    };
    Kind kind = Kind::kNumber;
    Type type = Type::kNumber;
    Op op = Op::kEqual;
    bool isConstant = true;     // has neither a path nor a position in it
    bool usesPosition = false;  // outside of paths
    bool usesLast = false;
    double number = 0;
    std::string text;
    std::string operators;  // one before each operand of a sum or product but the first
    std::vector<Expr> operands;
    std::unique_ptr<Path> path;
    std::size_t position = 0;  // in the expression
    std::size_t site = 0;      // of kContains
};

}  // namespace uxkit

struct UXSelection::Program {
    uxkit::Path path;
    std::vector<std::string> names;  // of elements and attributes
    std::size_t pathSites = 0;
    std::size_t textSites = 0;
    bool leavesContext = false;  // asks for nodes that are not below the context
    bool wantsIndex = false;     // cannot be answered in one pass
};

namespace uxkit {

// What an expression means, or null and the fault.
std::shared_ptr<const UXSelection::Program> parse_selection(std::string_view expression,
                                                            UXSelectFault& fault);

// The number that a text stands for, NaN when it is none: digits with perhaps a point and a minus
// sign, and white space around.
double number_of(std::string_view text);

}  // namespace uxkit
