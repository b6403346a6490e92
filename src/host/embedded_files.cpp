// Replacing files, for programs beside the host.
#include "uxtree/host/embedded_files.h"

#include "base/file_output.h"

struct UXFileOutput::State {
    ux::FileOutput file;
};

UXFileOutput::UXFileOutput(const char* path) : state_(new State{ux::FileOutput(path)}) {}
UXFileOutput::~UXFileOutput() = default;
UXFileOutput::UXFileOutput(UXFileOutput&& other) noexcept = default;

bool UXFileOutput::Write(std::string_view bytes) {
    state_->file.write(bytes);
    return !state_->file.failed();
}

bool UXFileOutput::Commit() {
    return state_->file.commit();
}

int UXFileOutput::Error() const {
    return state_->file.error();
}

void UXRemoveUnfinishedFiles() {
    ux::remove_unfinished_files();
}

CStringUTF8 UXGetUnkeptProperties() {
    return ux::unkept_properties().c_str();
}
