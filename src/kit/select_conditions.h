// Selection: what holds for a node.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "kit/select_program.h"
#include "kit/select_tree.h"

namespace uxkit {

// What depends on text whose place is not known is neither true nor false.
enum class Truth { kNo, kYes, kUnknown };

inline Truth truth(bool holds) {
    return holds ? Truth::kYes : Truth::kNo;
}
inline Truth inverse(Truth value) {
    return value == Truth::kUnknown ? value : truth(value == Truth::kNo);
}

template <typename Number>
bool compare(Op op, Number a, Number b) {
    switch (op) {
        case Op::kEqual:
            return a == b;
        case Op::kUnequal:
            return a != b;
        case Op::kLess:
            return a < b;
        case Op::kLessOrEqual:
            return a <= b;
        case Op::kGreater:
            return a > b;
        default:
            return a >= b;
    }
}

// What a condition is about: a node, or an attribute or text of it.
template <typename Node>
struct Focus {
    const Node* node = nullptr;
    const std::string_view* leaf = nullptr;
    std::size_t position = 1;
    std::size_t size = 1;
};

// Sees one node after another that a path reaches. kYes ends the search.
template <typename Node>
class Visitor {
public:
    virtual ~Visitor() = default;
    virtual Truth node(const Node& node) = 0;
    virtual Truth leaf(std::string_view text) = 0;
    // The texts of an element with text and children: one or more, which are joined here.
    virtual Truth mixed(std::string_view joined) = 0;
    // A node that may or may not be one of those.
    virtual Truth perhaps() { return Truth::kUnknown; }
};

// Answers conditions over one tree. It remembers what several nodes ask for.
template <typename Tree>
class Conditions {
public:
    using Node = typename Tree::Node;
    using NodeFocus = Focus<Node>;

    Conditions(Tree& tree, const UXSelection::Program& program)
        : tree_(tree), program_(program), remembered_(program.pathSites) {}

    // An element whose text an answer was not known for.
    const UXXmlWrapperBase& mixed() const { return mixed_; }

    // Calls emit for the children that a step means, in order, until it says kYes; unsure is asked
    // about those that perhaps belong to them. Yields kYes when it was ended.
    template <typename Emit, typename Unsure>
    Truth children(const Node& node, const Step& step, Emit&& emit, Unsure&& unsure) {
        Node child{};
        if constexpr (!Tree::kIndexed) {
            if (is_last_alone(step) && !tree_.is_document(node)) {
                return tree_.last_child(node, step.name, child) ? emit(child) : Truth::kNo;
            }
        }
        const bool any = tree_.first_child(node, step.name, child);
        if (step.usesLast || step.predicates.size() > kMostCounted) {
            return listed(step, listed_children(any, child, step), emit, unsure);
        }
        return any ? counted(step, child, emit, unsure) : Truth::kNo;
    }

    // Do all conditions hold that have nothing to do with places?
    Truth all_hold(const Node& node, const Step& step) {
        std::array<std::size_t, kMostCounted> counts{};
        if (step.predicates.size() <= kMostCounted) return all_hold(node, step, counts);
        Truth result = Truth::kYes;
        for (const Expr& condition : step.predicates) {
            const Truth holds = this->holds(condition, {&node});
            if (holds == Truth::kNo) return holds;
            if (holds == Truth::kUnknown) result = holds;
        }
        return result;
    }

    // The attributes that a step means, in order. leaf is called with name and value.
    template <typename Emit, typename Unsure>
    Truth attributes(const Node& node, const Step& step, Emit&& emit, Unsure&& unsure) {
        if (tree_.is_document(node)) return Truth::kNo;
        if (step.name != kAnyName) {
            const auto value = tree_.attribute(node, step.name);
            if (!value) return Truth::kNo;
            const std::string& name = program_.names[static_cast<std::size_t>(step.name)];
            return leaves(step, {{name, std::string(*value)}}, emit, unsure);
        }
        return leaves(step, attributes_of(tree_.handle(node)), emit, unsure);
    }

    // The texts of an element, in order.
    template <typename Emit, typename Unsure, typename Mixed>
    Truth texts(const Node& node, const Step& step, Emit&& emit, Unsure&& unsure, Mixed&& mixed) {
        CStringUTF8 scratch;
        if (tree_.is_document(node)) return Truth::kNo;
        const std::string_view text = tree_.own_text(node, scratch);
        if (text.empty()) return Truth::kNo;
        if (!tree_.is_branch(node)) {
            return leaves(step, {{"", std::string(text)}}, emit, unsure);
        }
        std::vector<Leaf> pieces;
        if (tree_.split_text(node, text, pieces)) {
            return leaves(step, std::move(pieces), emit, unsure);
        }
        const bool isPlain = step.predicates.empty();
        const Truth seen = isPlain ? mixed(text) : unsure();
        if (seen == Truth::kUnknown || !isPlain) note_mixed(node);
        return seen;
    }

private:
    static constexpr std::size_t kMostCounted = 6;

    void note_mixed(const Node& node) {
        if (mixed_.IsNodeValid() == 0) mixed_ = tree_.handle(node);
    }

    // --- nodes of a step -------------------------------------------------------------------------

    static bool is_last_alone(const Step& step) {
        return step.predicates.size() == 1 && step.predicates[0].kind == Expr::Kind::kLast;
    }
    static bool is_counted_off(const Step& step, std::size_t count) {
        return !step.predicates.empty() && step.predicates[0].kind == Expr::Kind::kNumber &&
               static_cast<double>(count) >= step.predicates[0].number;
    }

    Truth all_hold(const Node& node, const Step& step,
                   std::array<std::size_t, kMostCounted>& counts) {
        Truth result = Truth::kYes;
        for (std::size_t i = 0; i < step.predicates.size(); ++i) {
            const Truth holds = this->holds(step.predicates[i], {&node, nullptr, ++counts[i]});
            if (holds == Truth::kNo) return holds;
            if (holds == Truth::kUnknown) {
                if (step.usesPosition) return holds;
                result = holds;
            }
        }
        return result;
    }

    // As children(), from this child on, counting the places while it goes.
    template <typename Emit, typename Unsure>
    Truth counted(const Step& step, Node child, Emit&& emit, Unsure&& unsure) {
        std::array<std::size_t, kMostCounted> counts{};
        Truth result = Truth::kNo;
        do {
            const Truth fits = all_hold(child, step, counts);
            if (fits != Truth::kNo) {
                const Truth seen = fits == Truth::kYes ? emit(child) : unsure();
                if (seen == Truth::kYes) return seen;
                if (seen == Truth::kUnknown) result = seen;
                // The places of what follows are not known either.
                if (fits == Truth::kUnknown && step.usesPosition) return Truth::kUnknown;
            }
        } while (!is_counted_off(step, counts[0]) && tree_.next_sibling(child, step.name));
        return result;
    }

    std::vector<Node> listed_children(bool any, Node child, const Step& step) {
        std::vector<Node> list;
        for (bool more = any; more; more = tree_.next_sibling(child, step.name)) {
            list.push_back(child);
        }
        return list;
    }

    // Applies one condition after another to the whole list.
    template <typename Emit, typename Unsure>
    Truth listed(const Step& step, std::vector<Node> list, Emit&& emit, Unsure&& unsure) {
        bool isUnsure = false;
        for (const Expr& condition : step.predicates) {
            std::vector<Node> kept;
            for (std::size_t i = 0; i < list.size(); ++i) {
                const Truth holds = this->holds(condition, {&list[i], nullptr, i + 1, list.size()});
                if (holds == Truth::kYes) kept.push_back(std::move(list[i]));
                isUnsure = isUnsure || holds == Truth::kUnknown;
            }
            if (isUnsure && step.usesPosition) return unsure();
            list = std::move(kept);
        }
        Truth result = isUnsure ? unsure() : Truth::kNo;
        for (std::size_t i = 0; i < list.size() && result != Truth::kYes; ++i) {
            const Truth seen = emit(list[i]);
            if (seen != Truth::kNo) result = seen;
        }
        return result;
    }

    template <typename Emit, typename Unsure>
    Truth leaves(const Step& step, std::vector<Leaf> list, Emit&& emit, Unsure&& unsure) {
        for (const Expr& condition : step.predicates) {
            std::vector<Leaf> kept;
            for (std::size_t i = 0; i < list.size(); ++i) {
                const std::string_view text = list[i].text;
                const Truth holds = this->holds(condition, {nullptr, &text, i + 1, list.size()});
                if (holds == Truth::kUnknown) return unsure();
                if (holds == Truth::kYes) kept.push_back(std::move(list[i]));
            }
            list = std::move(kept);
        }
        Truth result = Truth::kNo;
        for (const Leaf& leaf : list) {
            const Truth seen = emit(leaf);
            if (seen == Truth::kYes) return seen;
            if (seen == Truth::kUnknown) result = seen;
        }
        return result;
    }

    // --- conditions ------------------------------------------------------------------------------

    Truth holds(const Expr& condition, const NodeFocus& focus) {
        if (condition.type != Type::kNumber) return boolean(condition, focus);
        const auto number = this->number(condition, focus);
        return number ? truth(*number == static_cast<double>(focus.position)) : Truth::kUnknown;
    }

    Truth boolean(const Expr& expr, const NodeFocus& focus) {
        switch (expr.kind) {
            case Expr::Kind::kOr:
                return joined(expr, focus, Truth::kYes);
            case Expr::Kind::kAnd:
                return joined(expr, focus, Truth::kNo);
            case Expr::Kind::kCompare:
                return compared(expr, focus);
            case Expr::Kind::kNot:
                return inverse(boolean(expr.operands[0], focus));
            case Expr::Kind::kTruth:
                return boolean(expr.operands[0], focus);
            case Expr::Kind::kConstant:
                return truth(expr.number != 0);
            case Expr::Kind::kContains:
            case Expr::Kind::kStartsWith:
                return text_test(expr, focus);
            case Expr::Kind::kLiteral:
                return truth(!expr.text.empty());
            case Expr::Kind::kPath:
                return exists(*expr.path, focus);
            default:
                break;
        }
        const auto value = number(expr, focus);
        return value ? truth(*value != 0 && !std::isnan(*value)) : Truth::kUnknown;
    }

    // The first operand that decides does, wherever it stands.
    Truth joined(const Expr& expr, const NodeFocus& focus, Truth deciding) {
        Truth result = inverse(deciding);
        for (const Expr& operand : expr.operands) {
            const Truth value = boolean(operand, focus);
            if (value == deciding) return value;
            if (value == Truth::kUnknown) result = value;
        }
        return result;
    }

    Truth compared(const Expr& expr, const NodeFocus& focus) {
        const Expr& left = expr.operands[0];
        const Expr& right = expr.operands[1];
        const bool forEquality = expr.op == Op::kEqual || expr.op == Op::kUnequal;
        if (left.type == Type::kBoolean || right.type == Type::kBoolean) {
            if (forEquality || left.type == Type::kNodes || right.type == Type::kNodes) {
                return compared_truths(expr.op, boolean(left, focus), boolean(right, focus));
            }
        }
        if (left.type == Type::kNodes) return compared_nodes(expr, focus);
        if (forEquality && left.type == Type::kText && right.type == Type::kText) {
            return truth((left.text == right.text) == (expr.op == Op::kEqual));
        }
        const auto a = number(left, focus);
        const auto b = number(right, focus);
        return a && b ? truth(compare(expr.op, *a, *b)) : Truth::kUnknown;
    }

    static Truth compared_truths(Op op, Truth a, Truth b) {
        if (a == Truth::kUnknown || b == Truth::kUnknown) return Truth::kUnknown;
        return truth(compare(op, a == Truth::kYes ? 1 : 0, b == Truth::kYes ? 1 : 0));
    }

    std::optional<double> number(const Expr& expr, const NodeFocus& focus) {
        switch (expr.kind) {
            case Expr::Kind::kNumber:
                return expr.number;
            case Expr::Kind::kPosition:
                return static_cast<double>(focus.position);
            case Expr::Kind::kLast:
                return static_cast<double>(focus.size);
            case Expr::Kind::kCount:
                return count(*expr.operands[0].path, focus);
            case Expr::Kind::kSum:
            case Expr::Kind::kProduct:
                return calculated(expr, focus);
            case Expr::Kind::kNegation: {
                const auto value = number(expr.operands[0], focus);
                return value ? std::optional(-*value) : std::nullopt;
            }
            case Expr::Kind::kToNumber:
                return number(expr.operands[0], focus);
            case Expr::Kind::kLiteral:
                return number_of(expr.text);
            case Expr::Kind::kPath:
                return first_number(*expr.path, focus);
            default:
                break;
        }
        const Truth value = boolean(expr, focus);
        if (value == Truth::kUnknown) return std::nullopt;
        return value == Truth::kYes ? 1.0 : 0.0;
    }

    std::optional<double> calculated(const Expr& expr, const NodeFocus& focus) {
        auto result = number(expr.operands[0], focus);
        for (std::size_t i = 1; result && i < expr.operands.size(); ++i) {
            const auto operand = number(expr.operands[i], focus);
            if (!operand) return operand;
            switch (expr.operators[i - 1]) {
                case '+':
                    result = *result + *operand;
                    break;
                case '-':
                    result = *result - *operand;
                    break;
                case '*':
                    result = *result * *operand;
                    break;
                case '/':
                    result = *result / *operand;
                    break;
                default:
                    result = std::fmod(*result, *operand);
            }
        }
        return result;
    }

    // --- paths -----------------------------------------------------------------------------------

    // What was found for a path that several nodes ask for, by the node where it begins.
    struct First {
        std::string text;
        bool known = true;
        bool isBranch = false;  // then branch has the text
        Node branch{};
    };
    struct Answer {
        Truth truth = Truth::kNo;
        First first;
        std::optional<double> count;
    };
    struct Remembered {
        std::unordered_map<std::uint32_t, Answer> answers;
        // Of a step behind "//": the nodes in the whole tree that lead to a yes, and perhaps to
        // one.
        struct Hits {
            bool done = false;
            std::vector<std::uint32_t> sure;
            std::vector<std::uint32_t> perhaps;
        };
        std::vector<Hits> hits;
    };

    // The node where the part of a path begins that goes down, and its first step; none when there
    // is no such node.
    struct Start {
        Start(const Path& path, const NodeFocus& focus, Tree& tree) {
            node = focus.node;
            if (path.absolute) {
                made = tree.document();
                node = &made;
            }
            for (; step < path.steps.size(); ++step) {
                const Axis axis = path.steps[step].axis;
                if (axis != Axis::kParent && axis != Axis::kSelf) return;
                if (axis == Axis::kSelf) continue;
                if (node != &made) made = *node;
                node = tree.parent(made) ? &made : nullptr;
                if (node == nullptr) return;
            }
        }
        const Node* node = nullptr;
        std::size_t step = 0;
        Node made{};
    };

    // Runs ask, which fills an answer for the node where the path begins, unless it is known.
    template <typename Ask>
    Answer asked(const Path& path, const NodeFocus& focus, Ask&& ask) {
        const Start start(path, focus, tree_);
        Answer answer;
        if (start.node == nullptr) {
            answer.count = 0;
            return answer;
        }
        if constexpr (Tree::kIndexed) {
            if (path.isShared) {
                auto& answers = remembered_[path.site].answers;
                const auto known = answers.find(*start.node);
                if (known != answers.end()) return known->second;
                ask(*start.node, start.step, answer);
                answers.emplace(*start.node, answer);
                return answer;
            }
        }
        ask(*start.node, start.step, answer);
        return answer;
    }

    Truth search(const Path& path, const NodeFocus& focus, Visitor<Node>& visitor) {
        if (focus.leaf != nullptr) return visitor.leaf(*focus.leaf);  // "." is all there is
        if (!path.isShared) {
            const Start start(path, focus, tree_);
            return start.node == nullptr ? Truth::kNo
                                         : reach(path, start.step, *start.node, visitor);
        }
        return asked(path, focus,
                     [&](const Node& start, std::size_t step, Answer& answer) {
                         answer.truth = reach(path, step, start, visitor);
                     })
            .truth;
    }

    // Shows visitor what the steps from the given one on reach. The depth of this recursion is that
    // of the expression.
    Truth reach(const Path& path, std::size_t at, const Node& node, Visitor<Node>& visitor) {
        if (at == path.steps.size()) return visitor.node(node);
        const Step& step = path.steps[at];
        const auto unsure = [&] { return visitor.perhaps(); };
        switch (step.axis) {
            case Axis::kSelf:
                return reach(path, at + 1, node, visitor);
            case Axis::kChild:
                return children(
                    node, step,
                    [&](const Node& child) { return reach(path, at + 1, child, visitor); }, unsure);
            case Axis::kAttribute:
                return reach_attributes(node, step, visitor, unsure);
            case Axis::kText:
                return texts(
                    node, step, [&](const Leaf& leaf) { return visitor.leaf(leaf.text); }, unsure,
                    [&](std::string_view text) { return visitor.mixed(text); });
            default:
                return reach_below(path, at, node, visitor);
        }
    }

    template <typename Unsure>
    Truth reach_attributes(const Node& node, const Step& step, Visitor<Node>& visitor,
                           Unsure&& unsure) {
        if (step.name != kAnyName && step.predicates.empty()) {  // without copies
            if (tree_.is_document(node)) return Truth::kNo;
            const auto value = tree_.attribute(node, step.name);
            return value ? visitor.leaf(*value) : Truth::kNo;
        }
        return attributes(
            node, step, [&](const Leaf& leaf) { return visitor.leaf(leaf.text); }, unsure);
    }

    // Whether any node below leads to a yes: asked for nodes within each other, so the nodes that
    // do are listed once for the whole tree.
    Truth reach_below(const Path& path, std::size_t at, const Node& node, Visitor<Node>& visitor) {
        if constexpr (Tree::kIndexed) {
            auto& all = remembered_[path.site].hits;
            if (all.size() < path.steps.size()) all.resize(path.steps.size());
            if (!all[at].done) list_hits(path, at, visitor);
            const Node first = path.steps[at].axis == Axis::kDescendant ? node + 1 : node;
            const Node behind = tree_.end_of(node);
            const auto any = [&](const std::vector<std::uint32_t>& nodes) {
                const auto next = std::lower_bound(nodes.begin(), nodes.end(), first);
                return next != nodes.end() && *next < behind;
            };
            const auto& hits = remembered_[path.site].hits[at];
            if (any(hits.sure)) return Truth::kYes;
            return any(hits.perhaps) ? Truth::kUnknown : Truth::kNo;
        } else {
            throw NeedsIndex();
        }
    }

    void list_hits(const Path& path, std::size_t at, Visitor<Node>& visitor) {
        const Step& step = path.steps[at];
        typename Remembered::Hits hits;
        hits.done = true;
        const auto list = [&](Node node, Truth leads) {
            if (leads == Truth::kYes) hits.sure.push_back(node);
            if (leads == Truth::kUnknown) hits.perhaps.push_back(node);
            return Truth::kNo;
        };
        const auto follow = [&](Node node) {
            return list(node, reach(path, at + 1, node, visitor));
        };
        for (Node node = 0; node < tree_.end(); ++node) {
            if (step.axis == Axis::kDescendantOrSelf) {
                follow(node);
            } else if (step.usesPosition) {
                children(node, step, follow, [&] { return list(node + 1, Truth::kUnknown); });
            } else if (node != 0 && tree_.matches(node, step.name)) {
                const Truth fits = all_hold(node, step);
                if (fits == Truth::kYes) follow(node);
                if (fits == Truth::kUnknown) list(node, fits);
            }
        }
        std::sort(hits.sure.begin(), hits.sure.end());
        std::sort(hits.perhaps.begin(), hits.perhaps.end());
        remembered_[path.site].hits[at] = std::move(hits);
    }

    // --- questions about what a path reaches -----------------------------------------------------

    struct Exists final : Visitor<Node> {
        Truth node(const Node& /*node*/) override { return Truth::kYes; }
        Truth leaf(std::string_view /*text*/) override { return Truth::kYes; }
        Truth mixed(std::string_view /*joined*/) override { return Truth::kYes; }
    };

    Truth exists(const Path& path, const NodeFocus& focus) {
        Exists visitor;
        return search(path, focus, visitor);
    }

    struct EqualsText final : Visitor<Node> {
        EqualsText(Conditions& all, const std::string& wanted, bool equal)
            : all_(all), wanted_(wanted), equal_(equal) {}
        Truth node(const Node& node) override {
            const Text text = all_.tree_.string_value(node, all_.scratch_);
            if (!text.known && text.view.size() == wanted_.size()) return all_.unknown(node);
            return leaf(text.view);
        }
        Truth leaf(std::string_view text) override { return truth((text == wanted_) == equal_); }
        Truth mixed(std::string_view joined) override {
            if (!equal_) return joined.size() < wanted_.size() ? Truth::kYes : Truth::kUnknown;
            const bool perhaps = !wanted_.empty() && joined.find(wanted_) != std::string_view::npos;
            return perhaps ? Truth::kUnknown : Truth::kNo;
        }

    private:
        Conditions& all_;
        const std::string& wanted_;
        const bool equal_;
    };

    struct ComparesNumber final : Visitor<Node> {
        ComparesNumber(Conditions& all, Op op, double wanted)
            : all_(all), op_(op), wanted_(wanted) {}
        Truth node(const Node& node) override {
            const Text text = all_.tree_.string_value(node, all_.scratch_);
            return text.known ? leaf(text.view) : all_.unknown(node);
        }
        Truth leaf(std::string_view text) override {
            return truth(compare(op_, number_of(text), wanted_));
        }
        Truth mixed(std::string_view /*joined*/) override { return Truth::kUnknown; }

    private:
        Conditions& all_;
        const Op op_;
        const double wanted_;
    };

    Truth compared_nodes(const Expr& expr, const NodeFocus& focus) {
        const Expr& right = expr.operands[1];
        const bool forEquality = expr.op == Op::kEqual || expr.op == Op::kUnequal;
        if (forEquality && right.type == Type::kText) {
            EqualsText visitor(*this, right.text, expr.op == Op::kEqual);
            return search(*expr.operands[0].path, focus, visitor);
        }
        const auto wanted = number(right, focus);
        if (!wanted) return Truth::kUnknown;
        ComparesNumber visitor(*this, expr.op, *wanted);
        return search(*expr.operands[0].path, focus, visitor);
    }

    Truth unknown(const Node& node) {
        note_mixed(node);
        return Truth::kUnknown;
    }

    // Stops at the first one; what perhaps comes before makes it unknown.
    struct TakesFirst final : Visitor<Node> {
        TakesFirst(Conditions& all, First& first) : all_(all), first_(first) {}
        Truth node(const Node& node) override {
            if (!first_.known) return Truth::kYes;
            first_.isBranch = all_.tree_.is_branch(node) || all_.tree_.is_document(node);
            if (first_.isBranch) {
                first_.branch = node;
            } else {
                first_.text = all_.tree_.own_text(node, all_.scratch_);
            }
            return Truth::kYes;
        }
        Truth leaf(std::string_view text) override {
            if (first_.known) first_.text = text;
            return Truth::kYes;
        }
        Truth mixed(std::string_view /*joined*/) override {
            first_.known = false;
            return Truth::kUnknown;
        }
        Truth perhaps() override {
            first_.known = false;
            return Truth::kYes;
        }

    private:
        Conditions& all_;
        First& first_;
    };

    First first_text(const Path& path, const NodeFocus& focus) {
        First first;
        if (focus.leaf != nullptr) {
            first.text = *focus.leaf;
            return first;
        }
        return asked(path, focus,
                     [&](const Node& start, std::size_t step, Answer& answer) {
                         TakesFirst visitor(*this, answer.first);
                         if (reach(path, step, start, visitor) == Truth::kUnknown) {
                             answer.first.known = false;
                         }
                     })
            .first;
    }

    std::optional<double> first_number(const Path& path, const NodeFocus& focus) {
        const First first = first_text(path, focus);
        if (!first.known) return std::nullopt;
        if (!first.isBranch) return number_of(first.text);
        const Text text = tree_.string_value(first.branch, scratch_);
        if (text.known) return number_of(text.view);
        note_mixed(first.branch);
        return std::nullopt;
    }

    struct Counts final : Visitor<Node> {
        Truth node(const Node& /*node*/) override { return add(); }
        Truth leaf(std::string_view /*text*/) override { return add(); }
        Truth mixed(std::string_view /*joined*/) override { return Truth::kUnknown; }
        Truth add() {
            ++count;
            return Truth::kNo;
        }
        double count = 0;
    };

    std::optional<double> count(const Path& path, const NodeFocus& focus) {
        if (focus.leaf != nullptr) return 1.0;
        return asked(path, focus,
                     [&](const Node& start, std::size_t step, Answer& answer) {
                         Counts visitor;
                         if (reach(path, step, start, visitor) == Truth::kNo)
                             answer.count = visitor.count;
                     })
            .count;
    }

    Truth text_test(const Expr& expr, const NodeFocus& focus) {
        const Expr& where = expr.operands[0];
        if (where.type == Type::kText) return truth(passes(expr, where.text));
        const First first = first_text(*where.path, focus);
        if (!first.known) return Truth::kUnknown;
        return first.isBranch ? branch_test(expr, first.branch) : truth(passes(expr, first.text));
    }

    static bool passes(const Expr& expr, std::string_view text) {
        if (expr.kind == Expr::Kind::kContains) {
            return text.find(expr.text) != std::string_view::npos;
        }
        return text.substr(0, expr.text.size()) == expr.text;
    }

    // A branch may be within another that is asked about: its text is not searched again.
    Truth branch_test(const Expr& expr, const Node& node) {
        const Text text = tree_.string_value(node, scratch_);
        if (text.view.size() < expr.text.size()) return Truth::kNo;
        if (expr.text.empty()) return Truth::kYes;
        if (!text.known) return unknown(node);
        if (expr.kind == Expr::Kind::kStartsWith) return truth(passes(expr, text.view));
        if constexpr (Tree::kIndexed) {
            return truth(tree_.branch_contains(node, expr.text, expr.site));
        } else {
            throw NeedsIndex();
        }
    }

    Tree& tree_;
    const UXSelection::Program& program_;
    std::vector<Remembered> remembered_;
    UXXmlWrapperBase mixed_;
    CStringUTF8 scratch_;
};

}  // namespace uxkit
