// File descriptors and temporary files.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace uxtool {

// Owns a file descriptor; -1 owns none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor();
    int number() const { return number_; }
    bool is_open() const { return number_ >= 0; }
    // False, with errno set, when closing reports an error.
    bool close();

private:
    int number_;
};

// "No such file or directory" and the like, for the current errno.
std::string system_error();

// Writes everything, however often the system takes only a part; false with errno set.
bool write_fully(int descriptor, std::string_view bytes);

// A new file in the folder for temporary files; yields its path and an open descriptor. Throws
// Failure with kRefused.
std::pair<std::string, Descriptor> create_temporary();
// Removes those that a signal leaves behind; async-signal-safe.
void remove_temporaries();

}  // namespace uxtool
