// Selection: paths in XPath's short form, run over trees.
#include "uxtree/kit/select.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "kit/blocks.h"
#include "kit/select_conditions.h"
#include "kit/select_program.h"
#include "kit/select_tree.h"

struct [[gnu::visibility("hidden")]] UXSelected::Items {
    struct Item {
        UXXmlWrapperBase node;
        UXSelectedKind kind = UXSelectedKind::kElement;
        std::uint32_t detail = 0;  // of an attribute in attributes, of a text in pieces
    };
    // One of several texts of an element, in all of them joined.
    struct Piece {
        std::size_t offset = 0;
        std::size_t length = 0;
    };

    std::uint32_t number_of(const std::string& name) {
        if (name == attributes[last]) return last;
        const auto place =
            attributeNumbers.emplace(name, static_cast<std::uint32_t>(attributes.size()));
        if (place.second) attributes.push_back(name);
        return last = place.first->second;
    }
    // The text of a branch.
    uxkit::Text text_of(std::size_t index, CStringUTF8 & scratch) {
        if (tree == nullptr) index_branches();
        return tree->string_value(numbers[index], scratch);
    }
    void index_branches();

    uxkit::Blocks<Item> items;
    std::vector<std::string> attributes{""};
    std::unordered_map<std::string, std::uint32_t> attributeNumbers;
    std::uint32_t last = 0;
    std::vector<Piece> pieces{{}};
    UXXmlWrapperBase mixed;
    // Made when the text of a branch is first asked for: the document, and where the items are in it.
    std::unique_ptr<uxkit::IndexTree> tree;
    std::vector<uxkit::IndexTree::Node> numbers;
};

// The items are in the order of the document, so one walk finds them all.
void UXSelected::Items::index_branches() {
    auto made = std::make_unique<uxkit::IndexTree>(uxkit::Names(), items.front().node, true);
    numbers.assign(items.size(), made->document());
    std::size_t next = 0;
    if (items.front().kind == UXSelectedKind::kDocument) ++next;
    for (uxkit::IndexTree::Node node = 1; node < made->end() && next < items.size(); ++node) {
        if (made->handle(node) == items[next].node) numbers[next++] = node;
    }
    tree = std::move(made);
}

UXSelected::UXSelected() = default;
UXSelected::UXSelected(UXSelected&& other) noexcept = default;
UXSelected::~UXSelected() = default;
UXSelected& UXSelected::operator=(UXSelected&& other) noexcept = default;

std::size_t UXSelected::size() const {
    return items_ == nullptr ? 0 : items_->items.size();
}

UXSelectedKind UXSelected::kind(std::size_t index) const {
    return items_->items[index].kind;
}

UXXmlWrapperBase UXSelected::node(std::size_t index) const {
    return items_->items[index].node;
}

const char* UXSelected::attribute(std::size_t index) const {
    const Items::Item& item = items_->items[index];
    return items_->attributes[item.kind == UXSelectedKind::kAttribute ? item.detail : 0].c_str();
}

bool UXSelected::text(std::size_t index, CStringUTF8& out) const {
    Items& all = *items_;
    const Items::Item& item = all.items[index];
    if (item.kind == UXSelectedKind::kAttribute) {
        out.Empty();
        item.node.GetPropertyValue(attribute(index), out, 0);
        return true;
    }
    if (item.kind == UXSelectedKind::kText && item.detail != 0) {
        CStringUTF8 scratch;
        const Items::Piece& piece = all.pieces[item.detail];
        const std::string_view text = uxkit::own_text(item.node, scratch);
        const std::string_view part = text.substr(std::min(piece.offset, text.size()));
        out.Assign(part.data(), std::min(piece.length, part.size()));
        return true;
    }
    if (!uxkit::is_branch(item.node)) {
        item.node.GetNodeStringWithBlobInfo(out, 0);
        return true;
    }
    CStringUTF8 scratch;
    const uxkit::Text text = all.text_of(index, scratch);
    out.Assign(text.view.data(), text.known ? text.view.size() : 0);
    return text.known;
}

UXXmlWrapperBase UXSelected::mixed() const {
    return items_ == nullptr ? UXXmlWrapperBase() : items_->mixed;
}

namespace uxkit {
namespace {

// Thrown where what is selected depends on text in mixed content.
struct MixedText {};

// Runs the steps of the path, each over all nodes that the one before found.
template <typename Tree>
class Run {
public:
    using Node = typename Tree::Node;

    Run(Tree& tree, const UXSelection::Program& program, UXSelected::Items& out)
        : tree_(tree), program_(program), conditions_(tree, program), out_(out) {}

    UXSelectOutcome select() {
        try {
            run_steps();
            return UXSelectOutcome::kDone;
        } catch (const MixedText&) {
            out_.items.clear();
            out_.mixed = conditions_.mixed();
            return UXSelectOutcome::kMixedText;
        }
    }

private:
    using Set = std::vector<Node>;

    static Truth unsure() { throw MixedText(); }

    void run_steps() {
        if constexpr (Tree::kIndexed) {
            run_on_sets();
        } else {
            const Node start = program_.path.absolute ? tree_.document() : tree_.context();
            lastParents_.resize(program_.path.steps.size());
            follow(start, 0);
        }
    }

    // --- by handles ------------------------------------------------------------------------------

    // One node after another to the end of the path, which finds them in the order of the document;
    // see Parser. The depth of this recursion is that of the expression.
    void follow(const Node& node, std::size_t at) {
        const std::vector<Step>& steps = program_.path.steps;
        if (at == steps.size()) return add_node(node);
        const Step& step = steps[at];
        switch (step.axis) {
            case Axis::kSelf:
                return follow(node, at + 1);
            case Axis::kParent:
                return follow_parent(node, at);
            case Axis::kChild:
                conditions_.children(
                    node, step,
                    [&](const Node& child) {
                        follow(child, at + 1);
                        return Truth::kNo;
                    },
                    unsure);
                return;
            case Axis::kDescendant:
            case Axis::kDescendantOrSelf:
                return follow_below(node, at);
            default:
                add_leaves(node, step);
        }
    }

    // The children of one parent come one behind the other.
    void follow_parent(Node node, std::size_t at) {
        if (!tree_.parent(node)) return;
        std::optional<Node>& last = lastParents_[at];
        if (last && *last == node) return;
        last = node;
        follow(node, at + 1);
    }

    void follow_below(const Node& top, std::size_t at) {
        const Step& step = program_.path.steps[at];
        if (step.axis == Axis::kDescendantOrSelf) follow(top, at + 1);
        Node branch = top;
        if (tree_.is_document(top)) {
            if (!tree_.first_child(top, kAnyName, branch)) return;
            if (tree_.first_child(top, step.name, branch)) visit_below(branch, at);
            tree_.first_child(top, kAnyName, branch);
        }
        Node node = branch;
        for (bool more = tree_.next_below(branch, step.name, node); more;) {
            const bool isPassed = visit_below(node, at);
            more = isPassed ? tree_.next_behind(branch, step.name, node)
                            : tree_.next_below(branch, step.name, node);
        }
    }

    // Has the branch of the node been looked through for others that the step means?
    bool visit_below(const Node& node, std::size_t at) {
        const Step& step = program_.path.steps[at];
        const Truth holds = conditions_.all_hold(node, step);
        if (holds == Truth::kUnknown) unsure();
        if (holds == Truth::kNo) return false;
        if (step.mustBeApart) {
            Node inner = node;
            if (tree_.next_below(node, step.name, inner)) throw NeedsIndex();
        }
        follow(node, at + 1);
        return step.mustBeApart;
    }

    // --- by the index ----------------------------------------------------------------------------

    void run_on_sets() {
        const Path& path = program_.path;
        Set set{path.absolute ? tree_.document() : tree_.context()};
        for (std::size_t i = 0; i < path.steps.size(); ++i) {
            const Step& step = path.steps[i];
            switch (step.axis) {
                case Axis::kAttribute:
                case Axis::kText:
                    for (const Node node : set) add_leaves(node, step);
                    return add_texts();
                case Axis::kDescendantOrSelf:
                    for_each_inside(set, true,
                                    [&](Node node) { add_leaves(node, path.steps[i + 1]); });
                    return add_texts();
                default:
                    set = stepped(std::move(set), step);
            }
        }
        for (const Node node : set) add_node(node);
    }

    Set stepped(Set set, const Step& step) {
        switch (step.axis) {
            case Axis::kParent:
                return parents(set);
            case Axis::kChild:
                return children(set, step);
            case Axis::kDescendant:
                return descendants(set, step);
            default:
                return set;
        }
    }

    static Set ordered(Set set) {
        if (!std::is_sorted(set.begin(), set.end())) std::sort(set.begin(), set.end());
        set.erase(std::unique(set.begin(), set.end()), set.end());
        return set;
    }

    Set parents(const Set& set) {
        Set found;
        for (Node node : set) {
            if (tree_.parent(node)) found.push_back(node);
        }
        return ordered(std::move(found));
    }

    Set children(const Set& set, const Step& step) {
        Set found;
        for (const Node node : set) add_children(node, step, found);
        return ordered(std::move(found));
    }

    void add_children(Node node, const Step& step, Set& found) {
        conditions_.children(
            node, step,
            [&](Node child) {
                found.push_back(child);
                return Truth::kNo;
            },
            unsure);
    }

    Set descendants(const Set& set, const Step& step) {
        Set found;
        if (step.usesPosition) {
            for_each_inside(set, true, [&](Node node) { add_children(node, step, found); });
            return ordered(std::move(found));
        }
        for_each_inside(set, false, [&](Node node) {
            if (!tree_.matches(node, step.name)) return;
            const Truth holds = conditions_.all_hold(node, step);
            if (holds == Truth::kUnknown) unsure();
            if (holds == Truth::kYes) found.push_back(node);
        });
        return found;
    }

    // Every node below those of the set once, in order, and perhaps themselves.
    template <typename Visit>
    void for_each_inside(const Set& set, bool themselves, Visit&& visit) {
        Node done = 0;  // nodes before were visited
        for (const Node top : set) {
            const Node first = themselves ? top : top + 1;
            for (Node node = std::max(first, done); node < tree_.end_of(top); ++node) visit(node);
            done = std::max(done, tree_.end_of(top));
        }
    }

    // --- results ---------------------------------------------------------------------------------

    void add_leaves(const Node& node, const Step& step) {
        if (step.axis == Axis::kAttribute) {
            conditions_.attributes(
                node, step,
                [&](const Leaf& leaf) {
                    out_.items.push_back({tree_.handle(node), UXSelectedKind::kAttribute,
                                          out_.number_of(leaf.name)});
                    return Truth::kNo;
                },
                unsure);
            return;
        }
        const Truth seen = conditions_.texts(
            node, step,
            [&](const Leaf& leaf) {
                add_text(node, leaf);
                return Truth::kNo;
            },
            [] { return Truth::kUnknown; },
            [](std::string_view /*joined*/) { return Truth::kUnknown; });
        if (seen == Truth::kUnknown) unsure();
    }

    void add_text(const Node& node, const Leaf& leaf) {
        if constexpr (Tree::kIndexed) {
            if (tree_.keeps_layout()) {
                // The only text of an element without children comes before what follows it.
                const Node next = leaf.next != 0 ? leaf.next : node + 1;
                texts_.push_back({next, node, {leaf.offset, leaf.text.size()}});
                return;
            }
        }
        out_.items.push_back({tree_.handle(node), UXSelectedKind::kText, 0});
    }

    // The texts that were found, those in front of one node from the innermost element on.
    void add_texts() {
        std::sort(texts_.begin(), texts_.end(), [](const FoundText& a, const FoundText& b) {
            return a.next != b.next ? a.next < b.next : b.owner < a.owner;
        });
        for (const FoundText& text : texts_) {
            const auto number = static_cast<std::uint32_t>(out_.pieces.size());
            out_.items.push_back({tree_.handle(text.owner), UXSelectedKind::kText, number});
            out_.pieces.push_back(text.piece);
        }
    }

    void add_node(const Node& node) {
        UXSelected::Items::Item& item = out_.items.emplace_back();
        if (!tree_.is_document(node)) {
            item.node = tree_.handle(node);
            return;
        }
        Node root{};
        if (tree_.first_child(node, kAnyName, root)) item.node = tree_.handle(root);
        item.kind = UXSelectedKind::kDocument;
    }

    Tree& tree_;
    const UXSelection::Program& program_;
    Conditions<Tree> conditions_;
    UXSelected::Items& out_;
    std::vector<std::optional<Node>> lastParents_;  // of each step
    struct FoundText {
        Node next;  // the node that it stands before
        Node owner;
        UXSelected::Items::Piece piece;
    };
    std::vector<FoundText> texts_;
};

UXSelectOutcome run_program(const UXSelection::Program& program, const UXXmlWrapperBase& context,
                            UXSelected::Items& out) {
    if (!program.wantsIndex) {
        try {
            HandleTree tree(program.names, context);
            return Run<HandleTree>(tree, program, out).select();
        } catch (const NeedsIndex&) {
            out.items.clear();
        }
    }
    IndexTree tree(program.names, context, program.leavesContext);
    return Run<IndexTree>(tree, program, out).select();
}

}  // namespace
}  // namespace uxkit

UXSelection::UXSelection() = default;
UXSelection::UXSelection(const UXSelection& other) = default;
UXSelection::UXSelection(UXSelection&& other) noexcept = default;
UXSelection::~UXSelection() = default;
UXSelection& UXSelection::operator=(const UXSelection& other) = default;
UXSelection& UXSelection::operator=(UXSelection&& other) noexcept = default;

bool UXSelection::compile(const char* expression, UXSelectFault* fault) {
    UXSelectFault found;
    try {
        if (auto program = uxkit::parse_selection(expression == nullptr ? "" : expression, found)) {
            program_ = std::move(program);
            return true;
        }
        if (fault != nullptr) *fault = std::move(found);
    } catch (...) {
        if (fault != nullptr) *fault = {0, "out of memory"};
    }
    return false;
}

UXSelectOutcome UXSelection::run(const UXXmlWrapperBase& context, UXSelected& result) const {
    result.items_.reset();
    if (program_ == nullptr || context.IsNodeValid() == 0) return UXSelectOutcome::kNoTree;
    try {
        auto items = std::make_unique<UXSelected::Items>();
        const UXSelectOutcome outcome = uxkit::run_program(*program_, context, *items);
        result.items_ = std::move(items);
        return outcome;
    } catch (...) {
        return UXSelectOutcome::kOutOfMemory;
    }
}
