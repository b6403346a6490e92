// A branch written as key and value text, and read back; dotted paths of nodes.
#include "uxtree/data/key_values.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/ascii.h"
#include "frame/guards.h"
#include "frame/node_values.h"
#include "frame/results.h"
#include "frame/text.h"
#include "frame/walk.h"

using namespace ux;

namespace {

constexpr char kQuote = '"';
constexpr const char* kDoubledBackslash = "\\\\";
constexpr const char* kBackslash = "\\";

void append_pair(UXXmlWrapperBase& branch, std::string_view pair, char keySeparator) {
    const std::size_t separator = pair.find(keySeparator);
    if (separator == 0 || separator == std::string_view::npos) return;
    const CStringUTF8 key(trimmed(pair.substr(0, separator)));
    const CStringUTF8 value(trimmed(pair.substr(separator + 1)));
    branch.AddTextNode(nullptr, key, value, -1, 0, nullptr);
}

bool ends_escaped(const CStringUTF8& token) {
    int length = token.GetLength();
    int backslashes = 0;
    while (length > 0 && token[length - 1] == '\\') {
        --length;
        ++backslashes;
    }
    return backslashes % 2 != 0;
}

// A token with the texts that it takes up, kept apart so that a long chain of tokens is not copied
// anew for each of them.
class JoinedTokens {
public:
    explicit JoinedTokens(char separator) : separator_(separator) {}

    void put_in_front(const CStringUTF8& token) {
        CStringUTF8 text = token;
        // A run of backslashes that goes on behind the separator is one run.
        if (separator_ == '\\' && !texts_.empty()) text = text + take();
        texts_.push_back(std::move(text));
        escaped_.push_back(texts_.size() - 1);
    }
    // Halves every run of backslashes; texts without one are not looked at again.
    void unescape() {
        std::vector<std::size_t> still;
        for (const std::size_t place : escaped_) {
            if (texts_[place].Replace(kDoubledBackslash, kBackslash) > 0) still.push_back(place);
        }
        escaped_ = std::move(still);
    }
    // The whole text; nothing is left.
    CStringUTF8 take() {
        std::string whole;
        for (auto text = texts_.rbegin(); text != texts_.rend(); ++text) whole += view_of(*text);
        texts_.clear();
        escaped_.clear();
        CStringUTF8 out;
        out.Assign(whole.data(), whole.size());
        return out;
    }

private:
    char separator_;
    std::vector<CStringUTF8> texts_;    // the last one first
    std::vector<std::size_t> escaped_;  // those that may hold doubled backslashes
};

}  // namespace

bool VCTreeGetPathStr(CStringUTF8& out, UXXmlWrapperBase* node) {
    return at_boundary(false, [&] {
        if (!usable(node)) {
            out.Empty();
            return false;
        }
        std::vector<CStringUTF8> tags;
        std::size_t length = 0;
        UXXmlWrapperBase step = *node;
        do {
            tags.push_back(tag_of(step));
            length += view_of(tags.back()).size() + 1;
        } while (step_to_parent(step));
        std::string path;
        path.reserve(length);
        for (auto tag = tags.rbegin(); tag != tags.rend(); ++tag) {
            if (!path.empty()) path += '.';
            path += view_of(*tag);
        }
        out = path.c_str();
        return true;
    });
}

void vctree_convert_escape_character(CWBOStringArray& tokens, char separator, bool keepEscapes) {
    at_boundary([&] {
        if (tokens.IsEmpty()) return;
        // Intended: the last token is unescaped only when the one before it takes it up, and a
        // text that was taken up is unescaped for the second time with its new owner.
        std::vector<CStringUTF8> joined;  // the last one first
        JoinedTokens group(separator);
        for (int i = tokens.GetSize() - 1; i >= 0; --i) {
            const bool isLast = i == tokens.GetSize() - 1;
            CStringUTF8 token = tokens[i];
            if (!isLast && ends_escaped(token)) {
                token.SetAt(token.GetLength() - 1, separator);
            } else if (!isLast) {
                joined.push_back(group.take());
            }
            group.put_in_front(token);
            if (!keepEscapes && !isLast) group.unescape();
        }
        joined.push_back(group.take());
        CWBOStringArray out;
        for (auto text = joined.rbegin(); text != joined.rend(); ++text) out.Add(std::move(*text));
        tokens = std::move(out);
    });
}

extern "C" int uxtree_branch_to_key_value_pairs_str(UXXmlWrapperBase* branch, CStringUTF8* out,
                                                    char keySeparator, char pairSeparator) {
    return at_boundary(kFail, [&] {
        if (any_null(out)) return kFail;
        if (!usable(branch) || is_leaf(*branch)) {
            out->Empty();
            return kFail;
        }
        std::string text;
        std::string_view part;
        CStringUTF8 scratch;
        for (const UXXmlWrapperBase& child : children(*branch)) {
            child.GetTagView(part);
            text += part;
            text += keySeparator;
            child.NodeValueView(part, scratch);
            text += part;
            text += pairSeparator;
        }
        out->Assign(text.data(), text.size());
        return kOk;
    });
}

extern "C" int uxtree_key_value_pairs_str_to_branch(UXXmlWrapperBase* branch, const char* text,
                                                    char keySeparator, char pairSeparator) {
    return at_boundary(kFail, [&] {
        if (!usable(branch) || text == nullptr) return kFail;
        CWBOStringArray pairs;
        UXGetTokens(pairs, text, pairSeparator, kQuote);
        branch->RemoveAllChildren();
        for (int i = 0; i < pairs.GetSize(); ++i)
            append_pair(*branch, view_of(pairs[i]), keySeparator);
        return is_leaf(*branch) ? kFail : kOk;
    });
}

extern "C" int uxtree_add_path_str(UXXmlWrapperBase* branch, const char* attribute, int recursive,
                                   int includeSelf) {
    return at_boundary(kFail, [&] {
        if (!given(attribute) || !usable(branch)) return kFail;
        const UXNameKey name(attribute);
        std::string_view tag;
        std::string path;
        if (includeSelf != 0) {
            branch->GetTagView(tag);
            path = tag;
            branch->SetPropertyView(name, path);
            path += '.';
        }
        if (recursive == 0) return kOk;
        // Each level knows the length of its parent's path, the dot behind it included.
        visit_levels(*branch, path.size(),
                     [&](UXXmlWrapperBase& node, std::size_t& parent, std::size_t& below) {
                         path.resize(parent);
                         node.GetTagView(tag);
                         path += tag;
                         node.SetPropertyView(name, path);
                         path += '.';
                         below = path.size();
                         return Step::kGoOn;
                     });
        return kOk;
    });
}
