// Selection: reading the expression.
#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "base/ascii.h"
#include "base/decimal.h"
#include "base/utf8.h"
#include "base/xml_names.h"
#include "kit/select_program.h"

namespace uxkit {
namespace {

using ux::is_blank;

// What bounds the machine stack that reading and running need.
constexpr int kMostNesting = 40;
constexpr std::size_t kMostSteps = 400;

struct Fault {
    std::size_t position;
    std::string message;
};

bool is_descent(Axis axis) {
    return axis == Axis::kDescendant || axis == Axis::kDescendantOrSelf;
}
bool ends_path(Axis axis) {
    return axis == Axis::kAttribute || axis == Axis::kText;
}

// One token after another, each told by its first characters and by what may stand there.
class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    std::shared_ptr<const UXSelection::Program> parse() {
        require_characters();
        skip_blanks();
        if (at_end()) refuse("a path is expected");
        program_->path = parse_main_path();
        skip_blanks();
        if (!at_end()) refuse(fault_of_rest());
        program_->wantsIndex = program_->wantsIndex || main_path_wants_index();
        return std::move(program_);
    }

private:
    // --- characters ------------------------------------------------------------------------------

    // What no document can hold is in no path either.
    void require_characters() const {
        for (std::size_t at = 0; at < text_.size();) {
            const ux::Utf8Char next = ux::decode_utf8(text_, at);
            if (next.length == 0) refuse_at(at, "the path is not UTF-8");
            if (!ux::is_xml_character(next.code)) refuse_at(at, "XML cannot hold this character");
            at += next.length;
        }
    }

    [[noreturn]] static void refuse_at(std::size_t position, std::string message) {
        throw Fault{position, std::move(message)};
    }
    [[noreturn]] void refuse(std::string message) const { refuse_at(at_, std::move(message)); }
    std::string fault_of_rest() const {
        const char c = text_[at_];
        if (c == '|') return "several paths in one are not known";
        if (c == ']' || c == ')') {
            return "nothing was opened that '" + std::string(1, c) + "' could close";
        }
        return "the path should end here";
    }

    bool at_end() const { return at_ >= text_.size(); }
    char peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }
    void skip_blanks() {
        while (!at_end() && is_blank(text_[at_])) ++at_;
    }
    // Takes the text when it stands next, blanks before it or not.
    bool take(std::string_view wanted) {
        skip_blanks();
        if (text_.substr(at_, wanted.size()) != wanted) return false;
        at_ += wanted.size();
        return true;
    }
    void expect(const char* wanted, std::size_t openedAt) {
        if (take(wanted)) return;
        if (at_end()) refuse_at(openedAt, std::string("'") + wanted + "' is missing");
        refuse(std::string("'") + wanted + "' is expected here");
    }

    // The name that stands next, "" when there is none.
    std::string_view name_ahead() const {
        std::size_t end = at_;
        while (end < text_.size()) {
            const ux::Utf8Char c = ux::decode_utf8(text_, end);
            if (c.length == 0 || c.code == 0) break;
            const bool fits = end == at_ ? ux::starts_name(c.code) : ux::continues_name(c.code);
            // "a::b" is an axis, not a name.
            if (!fits || (c.code == ':' && text_.substr(end, 2) == "::")) break;
            end += c.length;
        }
        return text_.substr(at_, end - at_);
    }
    // An operator that looks like a name.
    bool take_word(std::string_view word) {
        skip_blanks();
        if (name_ahead() != word) return false;
        at_ += word.size();
        return true;
    }

    class Nesting {
    public:
        explicit Nesting(Parser& parser) : parser_(parser) {
            if (++parser_.nesting_ > kMostNesting) {
                parser_.refuse("brackets are nested deeper than " + std::to_string(kMostNesting));
            }
        }
        ~Nesting() { --parser_.nesting_; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        Parser& parser_;
    };

    int number_of_name(std::string_view name) {
        std::vector<std::string>& names = program_->names;
        const auto found = std::find(names.begin(), names.end(), name);
        if (found != names.end()) return static_cast<int>(found - names.begin());
        names.emplace_back(name);
        return static_cast<int>(names.size()) - 1;
    }

    // --- paths -----------------------------------------------------------------------------------

    Path parse_main_path() {
        inPredicate_ = false;
        return parse_path();
    }

    Path parse_path() {
        Path path;
        path.absolute = peek() == '/';
        const int outerDepth = depth_;
        if (path.absolute) {
            program_->leavesContext = true;
            depth_ = kFarBelow;
            if (peek(1) != '/') {
                ++at_;
                skip_blanks();
                if (!starts_step()) {
                    depth_ = outerDepth;
                    return finished(std::move(path));
                }
                parse_step(path, false);
            }
        } else {
            parse_step(path, false);
        }
        for (skip_blanks(); peek() == '/'; skip_blanks()) {
            const std::size_t slash = at_;
            const bool descends = peek(1) == '/';
            at_ += descends ? 2 : 1;
            if (!path.steps.empty() && ends_path(path.steps.back().axis)) {
                refuse_at(slash, "nothing follows an attribute or text()");
            }
            if (path.steps.size() >= kMostSteps) {
                refuse_at(slash, "a path has at most " + std::to_string(kMostSteps) + " steps");
            }
            parse_step(path, descends);
        }
        depth_ = outerDepth;
        return finished(std::move(path));
    }

    Path finished(Path path) {
        path.site = program_->pathSites++;
        if (inPredicate_) classify(path);
        return path;
    }

    // Paths of predicates that leave the node they are about, other than for an attribute, are
    // asked again and again for the same nodes.
    void classify(Path& path) {
        bool left = path.absolute;
        for (const Step& step : path.steps) {
            left = left || step.axis == Axis::kParent;
            path.isDeep = path.isDeep || is_descent(step.axis);
            path.isShared =
                path.isShared || (left && step.axis != Axis::kParent && step.axis != Axis::kSelf &&
                                  step.axis != Axis::kAttribute);
        }
        program_->wantsIndex = program_->wantsIndex || path.isDeep || path.isShared;
    }

    bool starts_step() const {
        return peek() == '.' || peek() == '@' || peek() == '*' || !name_ahead().empty();
    }

    void parse_step(Path& path, bool descends) {
        skip_blanks();
        const std::size_t start = at_;
        if (peek() == '.') return parse_dots(path, descends);
        Step step;
        if (peek() == '@') {
            ++at_;
            skip_blanks();
            step.axis = Axis::kAttribute;
            step.name = parse_name("the name of an attribute");
        } else if (peek() == '*') {
            ++at_;
            step.axis = Axis::kChild;
        } else {
            parse_named_step(step);
        }
        if (onLeaf_) refuse_at(start, "an attribute or a text has nothing below it");
        if (descends && ends_path(step.axis)) {
            Step all;
            all.axis = Axis::kDescendantOrSelf;
            path.steps.push_back(std::move(all));
        } else if (descends) {
            step.axis = Axis::kDescendant;
        }
        if (!ends_path(step.axis)) ++depth_;
        parse_predicates(step);
        path.steps.push_back(std::move(step));
    }

    void parse_dots(Path& path, bool descends) {
        const std::size_t start = at_;
        Step step;
        step.axis = peek(1) == '.' ? Axis::kParent : Axis::kSelf;
        at_ += step.axis == Axis::kParent ? 2 : 1;
        if (descends) refuse_at(start, "behind // a name, *, @ or text() is expected");
        skip_blanks();
        if (peek() == '[') refuse("a condition cannot follow . or ..");
        if (step.axis == Axis::kParent) {
            if (onLeaf_) refuse_at(start, "a condition on an attribute or text knows . alone");
            const bool leading =
                std::all_of(path.steps.begin(), path.steps.end(), [](const Step& before) {
                    return before.axis == Axis::kParent || before.axis == Axis::kSelf;
                });
            if (inPredicate_ && !leading) {
                refuse_at(start, "in a condition, .. stands at the beginning of a path only");
            }
            if (--depth_ < 0) program_->leavesContext = true;
        }
        path.steps.push_back(std::move(step));
    }

    int parse_name(const char* what) {
        if (peek() == '*') {
            ++at_;
            return -1;
        }
        const std::size_t start = at_;
        const std::string_view name = name_ahead();
        if (name.empty()) refuse(std::string(what) + " is expected here");
        at_ += name.size();
        if (name == "xmlns" || name.substr(0, 6) == "xmlns:") {
            refuse_at(start, "declarations of namespaces are no attributes");
        }
        check_name(name, start);
        return number_of_name(name);
    }

    void check_name(std::string_view name, std::size_t start) const {
        if (name.back() == ':' && peek() == '*') {
            refuse_at(start, "all names of a prefix are not known: write the whole name");
        }
        const std::size_t colon = name.find(':');
        if (colon == std::string_view::npos) return;
        const std::string_view local = name.substr(colon + 1);
        if (colon == 0 || local.empty() || !ux::is_name(local) ||
            local.find(':') != std::string_view::npos) {
            refuse_at(start, "this is no name with a prefix");
        }
    }

    void parse_named_step(Step& step) {
        const std::size_t start = at_;
        const std::string_view name = name_ahead();
        if (name.empty()) refuse(fault_of_operand());
        at_ += name.size();
        skip_blanks();
        if (peek() == ':' && peek(1) == ':') {
            refuse_at(start, "axes are not known: write / // @ . and ..");
        }
        if (peek() == '(') {
            if (name == "text") {
                ++at_;
                expect(")", at_ - 1);
                step.axis = Axis::kText;
                return;
            }
            refuse_at(start, inPredicate_ ? "the function " + std::string(name) + "() is not known"
                                          : "a path cannot have a function here");
        }
        step.axis = Axis::kChild;
        check_name(name, start);
        step.name = number_of_name(name);
    }

    // Why no path begins here.
    const char* fault_of_operand() const {
        if (at_end()) return "the path ends too early";
        if (peek() == '$') return "variables are not known";
        if (peek() == '|') return "several paths in one are not known";
        if (peek() == '(') return "a path cannot stand in brackets";
        return inPredicate_ ? "a path, a text or a number is expected here"
                            : "a name, *, @, text(), . or .. is expected here";
    }

    void parse_predicates(Step& step) {
        for (skip_blanks(); peek() == '['; skip_blanks()) {
            const std::size_t start = at_++;
            const Nesting nesting(*this);
            const bool outerInPredicate = std::exchange(inPredicate_, true);
            const bool outerOnLeaf = std::exchange(onLeaf_, ends_path(step.axis));
            Expr condition = parse_or();
            inPredicate_ = outerInPredicate;
            onLeaf_ = outerOnLeaf;
            expect("]", start);
            step.usesPosition =
                step.usesPosition || condition.usesPosition || condition.type == Type::kNumber;
            step.usesLast = step.usesLast || condition.usesLast;
            step.predicates.push_back(std::move(condition));
        }
        if (step.usesPosition && step.axis == Axis::kDescendant) program_->wantsIndex = true;
    }

    // Without the index nodes are found in the order of the document as long as those that further
    // steps start from do not lie within each other. A parent may be around one that comes later.
    bool main_path_wants_index() {
        Step* descent = nullptr;
        for (Step& step : program_->path.steps) {
            if (descent != nullptr && !ends_path(step.axis) && step.axis != Axis::kSelf) {
                if (step.axis == Axis::kParent || descent->name < 0) return true;
                descent->mustBeApart = true;
            }
            if (is_descent(step.axis)) descent = &step;
        }
        return false;
    }

    // --- conditions ------------------------------------------------------------------------------

    static Expr make(Expr::Kind kind, Type type, std::size_t position) {
        Expr expr;
        expr.kind = kind;
        expr.type = type;
        expr.position = position;
        return expr;
    }
    static void add_operand(Expr& expr, Expr operand) {
        expr.isConstant = expr.isConstant && operand.isConstant;
        expr.usesPosition = expr.usesPosition || operand.usesPosition;
        expr.usesLast = expr.usesLast || operand.usesLast;
        expr.operands.push_back(std::move(operand));
    }

    Expr parse_or() {
        return parse_words(Expr::Kind::kOr, "or", [this] {
            return parse_words(Expr::Kind::kAnd, "and", [this] { return parse_equality(); });
        });
    }

    template <typename ParseOperand>
    Expr parse_words(Expr::Kind kind, std::string_view word, ParseOperand&& parseOperand) {
        Expr first = parseOperand();
        if (!take_word(word)) return first;
        Expr expr = make(kind, Type::kBoolean, first.position);
        add_operand(expr, std::move(first));
        do {
            add_operand(expr, parseOperand());
        } while (take_word(word));
        return expr;
    }

    bool take_operator(Op& op) {
        static constexpr std::array<std::pair<std::string_view, Op>, 6> kOperators{{
            {"!=", Op::kUnequal},
            {"<=", Op::kLessOrEqual},
            {">=", Op::kGreaterOrEqual},
            {"=", Op::kEqual},
            {"<", Op::kLess},
            {">", Op::kGreater},
        }};
        for (const auto& [written, known] : kOperators) {
            if (!take(written)) continue;
            op = known;
            return true;
        }
        return false;
    }

    static Op turned(Op op) {
        switch (op) {
            case Op::kLess:
                return Op::kGreater;
            case Op::kLessOrEqual:
                return Op::kGreaterOrEqual;
            case Op::kGreater:
                return Op::kLess;
            case Op::kGreaterOrEqual:
                return Op::kLessOrEqual;
            default:
                return op;
        }
    }

    // A path stands on the left of what comes out.
    Expr parse_equality() {
        Expr left = parse_sum();
        skip_blanks();
        const std::size_t start = at_;
        Op op{};
        if (!take_operator(op)) return left;
        Expr right = parse_sum();
        if (left.type == Type::kNodes && right.type == Type::kNodes) {
            refuse_at(start, "a path can be compared with a text or a number, not with a path");
        }
        if (right.type == Type::kNodes) {
            std::swap(left, right);
            op = turned(op);
        }
        if (left.type == Type::kNodes && (left.path->isShared || left.path->isDeep) &&
            !right.isConstant) {
            refuse_at(start, "a path that goes up or has // is compared with a constant only");
        }
        Expr expr = make(Expr::Kind::kCompare, Type::kBoolean, left.position);
        expr.op = op;
        add_operand(expr, std::move(left));
        add_operand(expr, std::move(right));
        skip_blanks();
        const std::size_t second = at_;
        if (take_operator(op)) refuse_at(second, "a comparison of a comparison needs brackets");
        return expr;
    }

    Expr parse_sum() {
        Expr first = parse_product();
        skip_blanks();
        if (peek() != '+' && peek() != '-') return first;
        Expr expr = make(Expr::Kind::kSum, Type::kNumber, first.position);
        add_number(expr, std::move(first));
        for (skip_blanks(); peek() == '+' || peek() == '-'; skip_blanks()) {
            expr.operators += text_[at_++];
            add_number(expr, parse_product());
        }
        return expr;
    }

    char take_factor_operator() {
        if (take("*")) return '*';
        if (take_word("div")) return '/';
        if (take_word("mod")) return '%';
        return '\0';
    }

    Expr parse_product() {
        Expr first = parse_signed();
        char next = take_factor_operator();
        if (next == '\0') return first;
        Expr expr = make(Expr::Kind::kProduct, Type::kNumber, first.position);
        add_number(expr, std::move(first));
        for (; next != '\0'; next = take_factor_operator()) {
            expr.operators += next;
            add_number(expr, parse_signed());
        }
        return expr;
    }

    Expr parse_signed() {
        skip_blanks();
        const std::size_t start = at_;
        bool minus = false;
        bool any = false;
        for (; take("-"); any = true) minus = !minus;
        Expr operand = parse_operand();
        if (!any) return operand;
        const Expr::Kind kind = minus ? Expr::Kind::kNegation : Expr::Kind::kToNumber;
        Expr expr = make(kind, Type::kNumber, start);
        add_number(expr, std::move(operand));
        return expr;
    }

    void add_number(Expr& expr, Expr operand) {
        require_shallow(operand);
        add_operand(expr, std::move(operand));
    }
    // Of the nodes of such a path the first one counts.
    void require_shallow(const Expr& operand) const {
        if (operand.type == Type::kNodes && operand.path->isDeep) {
            refuse_at(operand.position, "// is not known here");
        }
    }

    Expr parse_operand() {
        skip_blanks();
        const std::size_t start = at_;
        const char c = peek();
        if (c == '(') {
            const Nesting nesting(*this);
            ++at_;
            Expr inner = parse_or();
            expect(")", start);
            skip_blanks();
            if (inner.type == Type::kNodes && (peek() == '[' || peek() == '/')) {
                refuse("nothing follows a path in brackets");
            }
            return inner;
        }
        if (c == '\'' || c == '"') return parse_literal();
        if (ux::is_digit(c) || (c == '.' && ux::is_digit(peek(1)))) return parse_number();
        if (starts_function()) return parse_function();
        if (c == '/' || starts_step()) return parse_path_operand(start);
        refuse(fault_of_operand());
    }

    Expr parse_path_operand(std::size_t start) {
        Expr expr = make(Expr::Kind::kPath, Type::kNodes, start);
        expr.isConstant = false;
        if (onLeaf_ && peek() == '/') refuse("a condition on an attribute or text knows . alone");
        expr.path = std::make_unique<Path>(parse_path());
        return expr;
    }

    Expr parse_literal() {
        const std::size_t start = at_;
        const std::size_t end = text_.find(text_[start], start + 1);
        if (end == std::string_view::npos) refuse("the text is not closed");
        Expr expr = make(Expr::Kind::kLiteral, Type::kText, start);
        expr.text = text_.substr(start + 1, end - start - 1);
        at_ = end + 1;
        return expr;
    }

    Expr parse_number() {
        const std::size_t start = at_;
        while (ux::is_digit(peek())) ++at_;
        if (peek() == '.') ++at_;
        while (ux::is_digit(peek())) ++at_;
        Expr expr = make(Expr::Kind::kNumber, Type::kNumber, start);
        expr.number = number_of(text_.substr(start, at_ - start));
        return expr;
    }

    // --- functions -------------------------------------------------------------------------------

    bool starts_function() const {
        const std::string_view name = name_ahead();
        std::size_t behind = at_ + name.size();
        while (behind < text_.size() && is_blank(text_[behind])) ++behind;
        return !name.empty() && name != "text" && behind < text_.size() && text_[behind] == '(';
    }

    Expr parse_function() {
        const std::size_t start = at_;
        const Nesting nesting(*this);
        const std::string_view name = name_ahead();
        at_ += name.size();
        skip_blanks();
        const std::size_t bracket = at_++;
        Expr expr = parse_call(name, start);
        expect(")", bracket);
        return expr;
    }

    Expr parse_call(std::string_view name, std::size_t start) {
        if (name == "position" || name == "last") return parse_place(name, start);
        if (name == "true" || name == "false") {
            Expr expr = make(Expr::Kind::kConstant, Type::kBoolean, start);
            expr.number = name == "true" ? 1 : 0;
            return expr;
        }
        if (name == "not" || name == "boolean") {
            Expr expr =
                make(name == "not" ? Expr::Kind::kNot : Expr::Kind::kTruth, Type::kBoolean, start);
            add_operand(expr, parse_or());
            return expr;
        }
        if (name == "contains") return parse_text_test(Expr::Kind::kContains, start);
        if (name == "starts-with") return parse_text_test(Expr::Kind::kStartsWith, start);
        if (name == "number") {
            Expr expr = make(Expr::Kind::kToNumber, Type::kNumber, start);
            add_number(expr, parse_or());
            return expr;
        }
        if (name == "count") return parse_count(start);
        refuse_at(start, "the function " + std::string(name) + "() is not known");
    }

    static Expr parse_place(std::string_view name, std::size_t start) {
        const bool last = name == "last";
        Expr expr = make(last ? Expr::Kind::kLast : Expr::Kind::kPosition, Type::kNumber, start);
        expr.isConstant = false;
        expr.usesPosition = true;
        expr.usesLast = last;
        return expr;
    }

    Expr parse_count(std::size_t start) {
        Expr expr = make(Expr::Kind::kCount, Type::kNumber, start);
        Expr path = parse_or();
        if (path.type != Type::kNodes) refuse_at(path.position, "count() wants a path");
        require_shallow(path);
        add_operand(expr, std::move(path));
        return expr;
    }

    Expr parse_text_test(Expr::Kind kind, std::size_t start) {
        Expr expr = make(kind, Type::kBoolean, start);
        Expr where = parse_or();
        if (where.type != Type::kNodes && where.type != Type::kText) {
            refuse_at(where.position, "a path or a text is expected here");
        }
        require_shallow(where);
        expect(",", at_);
        skip_blanks();
        if (peek() != '\'' && peek() != '"') refuse("a text in quotes is expected here");
        expr.text = parse_literal().text;
        expr.site = program_->textSites++;
        add_operand(expr, std::move(where));
        return expr;
    }

    static constexpr int kFarBelow = 1 << 30;

    std::string_view text_;
    std::size_t at_ = 0;
    std::shared_ptr<UXSelection::Program> program_ = std::make_shared<UXSelection::Program>();
    int nesting_ = 0;
    int depth_ = 0;  // of a step below the context, at least
    bool inPredicate_ = false;
    bool onLeaf_ = false;  // the condition is about attributes or texts
};

}  // namespace

std::shared_ptr<const UXSelection::Program> parse_selection(std::string_view expression,
                                                            UXSelectFault& fault) {
    try {
        return Parser(expression).parse();
    } catch (const Fault& refused) {
        fault.position = refused.position;
        fault.message = refused.message;
        return nullptr;
    }
}

double number_of(std::string_view text) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    if (text.find_first_not_of("-.0123456789") != std::string_view::npos) return kNone;
    double value = kNone;
    return ux::read_decimal(text, value).length == text.size() ? value : kNone;
}

}  // namespace uxkit
