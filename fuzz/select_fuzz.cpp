// Selections over small documents, as libxml2 answers them: made from the bytes, or the bytes
// themselves.
#include "uxtree/kit/select.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "uxtree/host/embedded.h"

#include "kit/select_reference.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

enum class Content {
    kPlain,
    kMixed,    // where the order of texts and children may decide
    kOrdered,  // the same, and the order is known
};

// A prefix that no document declares is a name to us, and an error to libxml2; so is, behind a slash,
// a name that does not begin with an ASCII character.
bool only_we_understand(const std::string& expression) {
    if (expression.find(':') != std::string::npos) return true;
    for (std::size_t at = expression.find('/'); at < expression.size(); ++at) {
        const bool isBeyondAscii = static_cast<signed char>(expression[at]) < 0;
        if (isBeyondAscii && (expression[at - 1] == '/' || expression[at - 1] == ' ')) return true;
    }
    return false;
}

// Nearly all that is accepted is an expression to libxml2 as well, and means the same.
void check(const std::string& xml, const std::string& expression, Content content) {
    UXSelection selection;
    UXSelectFault fault;
    if (!selection.compile(expression.c_str(), &fault)) {
        require(!fault.message.empty() && fault.position <= expression.size());
        return;
    }
    UXXmlWrapperBase root;
    require(content == Content::kOrdered
                ? UXLoadForEditingFromMemory(&root, xml.data(), xml.size()) != 0
                : root.LoadFromMemory(xml.data(), xml.size()) != 0);
    uxtest::ReferenceDocument reference(xml);
    require(reference.valid());
    UXSelected result;
    const UXSelectOutcome outcome = selection.run(root, result);
    std::vector<std::string> theirs;
    const bool isTheirs = reference.select(expression, theirs);
    if (outcome == UXSelectOutcome::kMixedText) {
        require(content == Content::kMixed);
        return;
    }
    require(outcome == UXSelectOutcome::kDone);
    if (!isTheirs && only_we_understand(expression)) return;
    require(isTheirs && uxtest::agree(uxtest::selected_places(result), theirs));
}

constexpr const char* kDocument =
    "<a xmlns:p='urn:p' x='1'><b x='v' y='2'>v<!-- c --></b><p:d><b>2</b><c x='10'/><b y='v'>10"
    "</b></p:d><b><b> 1.5 </b><c/></b></a>";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned mode = data[0] % 4U;
    std::size_t at = 1;
    if (mode == 0) {
        const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
        check(kDocument, text.substr(0, text.find('\0')), Content::kPlain);
        return 0;
    }
    const uxtest::Choose choose = [&](unsigned n) -> unsigned {
        return at < size ? data[at++] % n : 0;
    };
    const Content content = mode == 1   ? Content::kMixed
                            : mode == 2 ? Content::kOrdered
                                        : Content::kPlain;
    const std::string expression = uxtest::ExpressionMaker(choose, true).make();
    check(uxtest::DocumentMaker(choose, content != Content::kPlain).make(), expression, content);
    return 0;
}
