// Outlines of well-formed files: what a reading tells, folded.
#include <memory>
#include <string_view>

#include "uxtree/host/embedded.h"
#include "uxtree/host/utilities.h"
#include "uxtree/kit/outline.h"

#include "frame/guards.h"
#include "outline/markup.h"
#include "outline/outline_builder.h"
#include "outline/outline_nodes.h"

using namespace ux;
namespace {

// Folds what it hears.
class Folder : public UXXmlEvents {
public:
    void Restart() override { builder_ = std::make_unique<OutlineBuilder>(); }
    void Start(std::string_view name, const UXXmlAttribute* attributes,
               std::size_t count) override {
        if (!builder_->begin_at(name.data())) builder_->begin(name);
        for (std::size_t i = 0; i < count; ++i) add(attributes[i]);
        builder_->start();
        isEmpty_ = false;
    }
    void End() override { builder_->end_expected(); }

    bool is_empty() const { return isEmpty_; }
    const LayoutNode& outline() const { return builder_->root(); }

private:
    void add(const UXXmlAttribute& attribute) {
        int id = 0;
        if (attribute.name == kIdAttribute && UXParseInt(attribute.value, id)) return;
        if (!builder_->attribute_at(attribute.name.data())) builder_->attribute(attribute.name);
    }

    std::unique_ptr<OutlineBuilder> builder_ = std::make_unique<OutlineBuilder>();
    bool isEmpty_ = true;
};

}  // namespace

int UXOutlineFile(UXXmlWrapperBase* target, const char* path, bool partial) {
    return at_boundary(0, [&] {
        if (target == nullptr || !usable(*target)) return 0;
        Folder folder;
        const int read = UXReadXml(path, &folder);
        if (read != 0 || (partial && !folder.is_empty())) write_outline(*target, folder.outline());
        return read;
    });
}
