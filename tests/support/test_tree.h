// Trees written as text, for arranging and comparing whole results.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "uxtree/host/host.h"

namespace uxtest {

// A document parsed from XML text, which must be well-formed. An attribute "_ux_id" becomes the
// element's ID. White space between elements is dropped, as load does. It is a handle to its root,
// for calls to take; should one turn that to another node, at and text still start at the root.
class TestTree : public UXXmlWrapperBase {
public:
    explicit TestTree(const char* xml);
    // The node reached by tags separated by "/", below the root; "a[1]" is the second child a.
    // Throws std::runtime_error when there is none.
    UXXmlWrapperBase at(const char* path) const;
    // The whole tree as text; see to_text.
    std::string text() const;

private:
    UXXmlWrapperBase root_;
};

// The serialised element with its branch; an ID stands as the attribute _ux_id, "(invalid)" for an
// invalid handle.
std::string to_text(const UXXmlWrapperBase& node);
// The same of a whole document in XML, which is how results are compared with literals.
std::string tree_text(const char* xml);
// The element's tag; "(invalid)" for an invalid handle.
std::string tag_text(const UXXmlWrapperBase& node);

std::string repeated(const std::string& text, int count);
std::vector<std::string> texts(const CWBOStringArray& array);
CWBOStringArray string_list(const std::vector<std::string>& values);
template <typename T>
std::vector<T> numbers(const CArray<T, T>& array) {
    std::vector<T> out;
    for (int i = 0; i < array.GetSize(); ++i) out.push_back(array[i]);
    return out;
}
template <typename T>
CArray<T, T> number_list(const std::vector<T>& values) {
    CArray<T, T> out;
    for (const T& value : values) out.Add(value);
    return out;
}
// Script array objects, as the script language would pass them.
UXScriptArray<CWBOStringArray> script_texts(const std::vector<std::string>& values);
UXScriptArray<CArray<int, int>> script_ints(const std::vector<int>& values);
UXScriptArray<CArray<double, double>> script_doubles(const std::vector<double>& values);
UXScriptArray<CArray<bool, bool>> script_bools(const std::vector<bool>& values);

// Replaces the host's services for the life of the object.
class FakeHostServices {
public:
    FakeHostServices() : saved_(UXGetHostServices()) {}
    ~FakeHostServices() { UXGetHostServices() = saved_; }
    FakeHostServices(const FakeHostServices&) = delete;
    FakeHostServices& operator=(const FakeHostServices&) = delete;
    UXHostServices* operator->() { return &UXGetHostServices(); }

private:
    UXHostServices saved_;
};

// A folder of its own for files, removed with the object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    std::string path(const std::string& name) const { return path_ + "/" + name; }
    std::string write(const std::string& name, const std::string& content) const;  // yields path

private:
    std::string path_;
};
std::string read_file(const std::string& path);

// A path below the source folder or the build folder of this run.
std::string source_path(const std::string& name);
std::string binary_path(const std::string& name);

}  // namespace uxtest
