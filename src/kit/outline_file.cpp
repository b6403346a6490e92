// Outlines of well-formed files: what a reading tells, folded.
#include <cstddef>
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

// Folds what it hears of documents; their roots are the children of a nameless one.
class Folder : public UXXmlEvents {
public:
    Folder() {
        builder_.begin({});
        builder_.start();
    }
    void next_document() { builder_.next_document(); }
    // What was told is told again, and folds into itself.
    void Restart() override { next_document(); }
    void Start(std::string_view name, const UXXmlAttribute* attributes,
               std::size_t count) override {
        if (!builder_.begin_at(name.data())) builder_.begin(name);
        for (std::size_t i = 0; i < count; ++i) add(attributes[i]);
        builder_.start();
    }
    void End() override { builder_.end_expected(); }

    const LayoutNode& outlines() const { return builder_.root(); }

private:
    void add(const UXXmlAttribute& attribute) {
        int id = 0;
        if (attribute.name == kIdAttribute && UXParseInt(attribute.value, id)) return;
        if (!builder_.attribute_at(attribute.name.data())) builder_.attribute(attribute.name);
    }

    OutlineBuilder builder_;
};

}  // namespace

int UXOutlineFile(UXXmlWrapperBase* target, const char* path, bool partial) {
    return at_boundary(0, [&] {
        if (target == nullptr || !usable(*target)) return 0;
        Folder folder;
        const int read = UXReadXml(path, &folder);
        if (read != 0 || partial) write_outlines(*target, folder.outlines());
        return read;
    });
}

int UXOutlineFiles(UXXmlWrapperBase* target, const char* const* paths, std::size_t count,
                   std::size_t* done) {
    std::size_t unused = 0;
    std::size_t& read = done == nullptr ? unused : *done;
    read = 0;
    return at_boundary(0, [&] {
        if (target == nullptr || !usable(*target) || (paths == nullptr && count != 0)) return 0;
        Folder folder;
        for (; read < count; ++read) {
            folder.next_document();
            if (UXReadXml(paths[read], &folder) == 0) return 0;
        }
        write_outlines(*target, folder.outlines());
        return 1;
    });
}
