#include "outline/outline_builder.h"

#include <algorithm>
#include <utility>

namespace ux {
namespace {

// More children than these are found through an index, and more attributes than these are not
// foreseen, so that an entry with very many of them costs no more for each.
constexpr std::size_t kFewChildren = 16;
constexpr std::size_t kFewAttributes = 32;

}  // namespace

LayoutNode::~LayoutNode() {
    std::vector<std::unique_ptr<LayoutNode>> doomed = std::move(children);
    while (!doomed.empty()) {
        const std::unique_ptr<LayoutNode> node = std::move(doomed.back());
        doomed.pop_back();
        std::move(node->children.begin(), node->children.end(), std::back_inserter(doomed));
        node->children.clear();
    }
}

LayoutNode* LayoutNode::find_child(std::string_view tag) const {
    if (index_ != nullptr) {
        const auto found = index_->find(tag);
        return found != index_->end() ? found->second : nullptr;
    }
    for (const std::unique_ptr<LayoutNode>& child : children) {
        if (child->name == tag) return child.get();
    }
    return nullptr;
}

LayoutNode& LayoutNode::add_child(std::string_view tag) {
    children.push_back(std::make_unique<LayoutNode>(tag));
    LayoutNode& added = *children.back();
    if (index_ != nullptr) {
        index_->emplace(added.name, &added);
    } else if (children.size() > kFewChildren) {
        index_ = std::make_unique<std::unordered_map<std::string_view, LayoutNode*>>();
        for (const auto& child : children) index_->emplace(child->name, child.get());
    }
    return added;
}

void LayoutNode::rename(std::string_view tag) {
    name = tag;
    knownName = KnownName(name);
}

const LayoutNode* OutlineBuilder::entry_for(std::string_view name) const {
    return open_.empty() ? nullptr : open_.back().node->find_child(name);
}

// The place that remembers what follows the last child of the open element.
LayoutNode*& OutlineBuilder::foreseen_node() {
    const OpenElement& parent = open_.back();
    return parent.lastChild != nullptr ? parent.lastChild->follower : parent.node->firstChild;
}
int& OutlineBuilder::foreseen_attribute() {
    if (lastAttribute_ < 0) return node_->firstAttribute;
    return node_->knownAttributes[static_cast<std::size_t>(lastAttribute_)].follower;
}

LayoutNode* OutlineBuilder::expected_node() const {
    if (open_.empty()) return nullptr;
    return const_cast<OutlineBuilder*>(this)->foreseen_node();
}

const KnownName* OutlineBuilder::expected_tag() const {
    const LayoutNode* node = expected_node();
    return node != nullptr && node->knownName.size() > 0 ? &node->knownName : nullptr;
}

const KnownName* OutlineBuilder::expected_end() const {
    if (open_.empty() || open_.back().node->knownName.size() == 0) return nullptr;
    return &open_.back().node->knownName;
}

const KnownName* OutlineBuilder::expected_attribute() const {
    if (node_ == nullptr) return nullptr;
    const int index = const_cast<OutlineBuilder*>(this)->foreseen_attribute();
    return index < 0 ? nullptr : &node_->knownAttributes[static_cast<std::size_t>(index)].name;
}

void OutlineBuilder::begin_expected() {
    node_ = expected_node();
    lastAttribute_ = -1;
}

void OutlineBuilder::attribute_expected() { lastAttribute_ = foreseen_attribute(); }

void OutlineBuilder::begin(std::string_view name) {
    node_ = open_.empty() ? &root_ : open_.back().node->find_child(name);
    lastAttribute_ = -1;
    if (node_ == nullptr || node_ == &root_) newName_ = name;
}

void OutlineBuilder::attribute(std::string_view name) {
    if (node_ != nullptr) {
        std::vector<LayoutNode::KnownAttribute>& known = node_->knownAttributes;
        const auto found = std::find_if(known.begin(), known.end(),
                                        [&](const auto& other) { return other.name == name; });
        if (found != known.end()) {
            follow(static_cast<int>(found - known.begin()));
            return;
        }
        if (known.size() == kFewAttributes) {
            scratch_ = name;
            if (node_->attributeNames.count(scratch_) != 0) return;
        }
    }
    newAttributes_.emplace_back(name);
}

void OutlineBuilder::follow(int attribute) {
    foreseen_attribute() = attribute;
    lastAttribute_ = attribute;
}

void OutlineBuilder::start() {
    LayoutNode& node = commit();
    open_.push_back({&node, nullptr});
}

void OutlineBuilder::start_and_end() { commit(); }

LayoutNode& OutlineBuilder::commit() {
    if (open_.empty()) {
        // Intended: a further top-level element renames the root, even to an empty name.
        if (root_.name != newName_) root_.rename(newName_);
    } else {
        if (node_ == nullptr) node_ = &open_.back().node->add_child(newName_);
        foreseen_node() = node_;
        open_.back().lastChild = node_;
    }
    if (!newAttributes_.empty()) add_new_attributes(*node_);
    return *node_;
}

void OutlineBuilder::add_new_attributes(LayoutNode& node) {
    for (std::string& name : newAttributes_) {
        const auto [place, isNew] = node.attributeNames.insert(std::move(name));
        if (!isNew || node.knownAttributes.size() == kFewAttributes) continue;
        node.knownAttributes.push_back({KnownName(*place), -1});
        follow(static_cast<int>(node.knownAttributes.size()) - 1);
    }
    newAttributes_.clear();
}

void OutlineBuilder::end(std::string_view name) {
    if (!open_.empty() && open_.back().node->name == name) open_.pop_back();
}

bool LayoutHandler::startElement(const std::string& name,
                                 const std::vector<std::string>& attributeNames) {
    names_.push_back(name);
    builder_.begin(name);
    for (const std::string& attribute : attributeNames) builder_.attribute(attribute);
    builder_.start();
    return true;
}

bool LayoutHandler::endElement(const std::string& name) {
    if (names_.empty() || names_.back() != name) return false;
    names_.pop_back();
    builder_.end(name);
    return true;
}

}  // namespace ux
