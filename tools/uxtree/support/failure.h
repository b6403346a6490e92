// Exit codes, and the exception that ends a command with one.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace uxtool {

enum ExitCode : int {
    kSuccess = 0,
    kNothingFound = 1,
    kUsage = 2,
    kUnreadable = 3,  // unreadable or not XML
    kRefused = 4,     // the operation was refused, or its result could not be written
};

// Ends a command (or, within for_each_file, the work on one file). Printed on standard error as
// "subject: message", followed by the place in the input and by "hint: ..." where there are such.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, std::string subject, const std::string& message, std::string hint = "")
        : std::runtime_error(message),
          code_(code),
          subject_(std::move(subject)),
          hint_(std::move(hint)) {}
    // Without a file to speak of.
    Failure(ExitCode code, const std::string& message) : Failure(code, "uxtree", message) {}

    // The place in the input, to be printed below the message.
    Failure& with_excerpt(std::string lines) {
        excerpt_ = std::move(lines);
        return *this;
    }
    ExitCode code() const { return code_; }
    const std::string& subject() const { return subject_; }
    const std::string& hint() const { return hint_; }
    const std::string& excerpt() const { return excerpt_; }

private:
    ExitCode code_;
    std::string subject_;  // a file, "file:line:column", or "uxtree"
    std::string hint_;
    std::string excerpt_;
};

// The reader of standard output went away; the tool then ends quietly.
class ClosedPipe : public std::exception {};

// While it lives, what this thread would print on standard error by the functions below is held back,
// and no progress is shown.
class HeldMessages {
public:
    HeldMessages();
    HeldMessages(const HeldMessages&) = delete;
    HeldMessages& operator=(const HeldMessages&) = delete;
    ~HeldMessages();
    const std::string& text() const { return text_; }
    static bool is_held();

private:
    std::string text_;
    std::string* outer_;
};
// Prints what was held back.
void print_messages(const std::string& text);

// While it lives, the notes of this thread wait, so that what was done is told once it is done; or
// they do not, as the caller says.
class HeldNotes {
public:
    explicit HeldNotes(bool wait);
    HeldNotes(const HeldNotes&) = delete;
    HeldNotes& operator=(const HeldNotes&) = delete;
    ~HeldNotes() { drop(); }
    // Both end the waiting.
    void say();
    void drop();

private:
    std::vector<std::string> waiting_;
    std::vector<std::string>* outer_;
};

void report(const Failure& failure);
// One line on standard error: what a user may want to know, and what needs attention.
void note(const std::string& text);
void warn(const std::string& text);

}  // namespace uxtool
