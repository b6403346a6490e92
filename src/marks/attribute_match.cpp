// Nodes matched by an attribute: by an index, or by walks where a transfer changes the key.
#include "marks/attribute_match.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/ascii.h"
#include "base/text_view.h"
#include "frame/results.h"
#include "frame/walk.h"

namespace ux {
namespace {

using Options = MatchOptions;

// What one source leaf writes into the nodes that match it.
struct Transfer {
    CStringUTF8 match;
    CStringUTF8 value;
    CStringUTF8 extra;
};

void write(UXXmlWrapperBase& target, const Transfer& transfer, const Options& options) {
    target.SetPropertyView(options.target, view_of(transfer.value));
    if (!options.extra.text().empty())
        target.SetPropertyView(options.extra, view_of(transfer.extra));
}

Step into_branches(const UXXmlWrapperBase& node, const Options& options) {
    return into_branch_if(options.recursive && !is_leaf(node));
}

// Intended: with `all`, the search of a target branch replaces a match found before it, so the
// result tells only about the nodes behind the last branch.
int search_by_walk(const UXXmlWrapperBase& target, const Transfer& transfer,
                   const Options& options) {
    int matched = kFail;
    const std::string_view wanted = view_of(transfer.match);
    std::string_view text;
    visit_below(target, [&](UXXmlWrapperBase& node) {
        if (node.GetPropertyView(options.match, text) &&
            (options.caseSensitive ? text == wanted : equal_no_case(text, wanted))) {
            write(node, transfer, options);
            matched = kOk;
            if (!options.all) return Step::kStop;
        }
        const Step step = into_branches(node, options);
        if (step == Step::kGoOn) matched = kFail;
        return step;
    });
    return matched;
}

// The target's nodes by the text of their match attribute, so that each source leaf finds its
// nodes without another walk. Usable as long as no transfer changes a match attribute.
class TargetIndex {
public:
    TargetIndex(const UXXmlWrapperBase& target, const Options& options) : options_(options) {
        std::size_t position = 0;
        std::string_view text;
        visit_below(target, [&](UXXmlWrapperBase& node) {
            ++position;
            if (node.GetPropertyView(options.match, text)) {
                nodes_[key(text)].push_back({node, position});
            }
            const Step step = into_branches(node, options);
            if (step == Step::kGoOn) lastBranch_ = position;
            return step;
        });
    }

    // The same outcome as search_by_walk.
    int search(const Transfer& transfer) {
        const auto found = nodes_.find(key(view_of(transfer.match)));
        if (found == nodes_.end()) return kFail;
        std::vector<Match>& matches = found->second;
        if (!options_.all) {
            write(matches.front().node, transfer, options_);
            return kOk;
        }
        for (Match& match : matches) write(match.node, transfer, options_);
        return matches.back().position > lastBranch_ ? kOk : kFail;
    }

private:
    struct Match {
        UXXmlWrapperBase node;
        std::size_t position;
    };

    std::string key(std::string_view text) const {
        return options_.caseSensitive ? std::string(text) : folded(text);
    }

    const Options& options_;
    std::size_t lastBranch_ = 0;
    std::unordered_map<std::string, std::vector<Match>> nodes_;
};

// Offers every leaf of the source that carries the match attribute; the last result counts.
template <typename Search>
int transfer_leaves(const UXXmlWrapperBase& source, const Options& options, Search&& search) {
    int result = kFail;
    Transfer transfer;
    visit_below(source, [&](UXXmlWrapperBase& node) {
        if (!is_leaf(node)) {
            // Intended: a source branch that finds nothing takes an earlier match back.
            if (options.recursive) result = kFail;
            return into_branches(node, options);
        }
        if (!node.GetPropertyValue(options.match, transfer.match)) return Step::kOverBranch;
        node.NodeValue(transfer.value, 1, 1, nullptr);
        transfer.extra.Empty();
        node.GetPropertyValue(options.extra, transfer.extra);
        result = search(transfer);
        return Step::kOverBranch;
    });
    return result;
}

bool writes_match_attribute(const Options& options) {
    const std::string_view match = options.match.text();
    return match == options.target.text() || match == options.extra.text();
}

}  // namespace

int copy_matching_values(const UXXmlWrapperBase& source, const UXXmlWrapperBase& target,
                         const MatchOptions& options) {
    if (writes_match_attribute(options)) {
        return transfer_leaves(source, options, [&](const Transfer& transfer) {
            return search_by_walk(target, transfer, options);
        });
    }
    TargetIndex index(target, options);
    return transfer_leaves(source, options,
                           [&](const Transfer& transfer) { return index.search(transfer); });
}

}  // namespace ux
