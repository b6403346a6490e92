// Folding repeated elements into entries while a document is read.
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

void ExpectedText::make(std::string_view before, std::string_view name, std::string_view behind) {
    made_ = std::make_unique<Made>();
    made_->text.append(before).append(name).append(behind);
    made_->known = KnownText(made_->text);
}

// What is to be freed is a list along the followers, since memory may have run out.
LayoutNode::~LayoutNode() {
    LayoutNode* doomed = nullptr;
    const auto takeChildren = [&doomed](LayoutNode& node) {
        for (std::unique_ptr<LayoutNode>& child : node.children) {
            child->follower = doomed;
            doomed = child.release();
        }
        node.children.clear();
    };
    takeChildren(*this);
    while (doomed != nullptr) {
        const std::unique_ptr<LayoutNode> node(doomed);
        doomed = node->follower;
        takeChildren(*node);
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
        index_ = std::make_unique<std::unordered_map<std::string_view, LayoutNode*, SeededHash>>();
        for (const auto& child : children) index_->emplace(child->name, child.get());
    }
    return added;
}

void LayoutNode::rename(std::string_view tag) {
    name = tag;
    expectedTag.forget();
    expectedEnd.forget();
}

void OutlineBuilder::begin(std::string_view name) {
    node_ = open_.empty() ? &root_ : foreseen_node();
    if (node_ != &root_ && (node_ == nullptr || node_->name != name)) {
        node_ = open_.back().node->find_child(name);
    }
    lastAttribute_ = nullptr;
    if (node_ == nullptr || node_ == &root_) newName_ = name;
    if (node_ != nullptr) node_->told = told_from(name.data());
}

void OutlineBuilder::attribute(std::string_view name) {
    if (node_ != nullptr) {
        LayoutNode::Attribute* const foreseen = foreseen_attribute();
        if (foreseen != nullptr && foreseen->name == name) {
            foreseen->told = told_from(name.data());
            return attribute_expected();
        }
        const auto& few = node_->fewAttributes;
        const auto found = std::find_if(few.begin(), few.end(),
                                        [&](const auto* other) { return other->name == name; });
        if (found != few.end()) {
            (*found)->told = told_from(name.data());
            return follow(*found);
        }
        if (few.size() == kFewAttributes && node_->attributes.count(name) != 0) return;
    }
    newAttributes_.emplace_back(name);
}

void OutlineBuilder::follow(LayoutNode::Attribute* attribute) {
    foreseen_attribute() = attribute;
    lastAttribute_ = attribute;
}

void OutlineBuilder::commit_new() {
    if (!open_.empty()) {
        node_ = &open_.back().node->add_child(newName_);
    } else if (root_.name != newName_) {
        root_.rename(newName_);  // Intended: also for a further top-level element, even a nameless
    }
}

void OutlineBuilder::add_new_attributes() {
    for (std::string& name : newAttributes_) {
        const auto [place, isNew] = node_->attributes.try_emplace(std::move(name));
        if (!isNew) continue;
        LayoutNode::Attribute& attribute = place->second;
        attribute.name = place->first;
        if (node_->fewAttributes.size() == kFewAttributes) continue;
        node_->fewAttributes.push_back(&attribute);
        follow(&attribute);
    }
    newAttributes_.clear();
}

void OutlineBuilder::end(std::string_view name) {
    if (is_open(name)) open_.pop_back();
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
