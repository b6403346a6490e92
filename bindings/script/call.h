// script/call: one function of C++ as a function of scripts.
//
// Each parameter has a converter, which the generator chooses by the annotations. A call goes by
// steps: take what the script passes, read it all, call, write numbers and texts back, and write
// arrays back last, since a variable may be an element of an array that changes its size.
#pragma once

#include <cstring>
#include <tuple>
#include <type_traits>

#include "uxtree/uxtree_Utils.h"

#include "values.h"

namespace uxscript {

// Where a converter finds its argument.
struct Place {
    as::asIScriptGeneric* call;
    as::asUINT index;

    // Takes over the reference that the script language counted for the call.
    template <class T>
    T* handle() const {
        return static_cast<T*>(call->GetArgAddress(index));
    }
    [[noreturn]] void refuse(const char* why) const;
};

struct Converter {
    void read() {}
    void write_values() {}
    void write_arrays() {}
};

// Numbers by value.
template <class T>
struct Number : Converter {
    explicit Number(const Place& place) : value(number_argument<T>(place.call, place.index)) {}
    T pass() const { return value; }
    T value;
};
// A number that C++ takes by a pointer, since it may be missing.
template <class T>
struct Pointed : Number<T> {
    using Number<T>::Number;
    T* pass() { return &this->value; }
};

// Objects that are counted: handles of nodes and records. Null is passed as null.
template <class T>
struct Object : Converter {
    explicit Object(const Place& place) : object(place.handle<Counted<T>>()) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() {
        if (object != nullptr) object->release();
    }
    T* pass() const { return object == nullptr ? nullptr : &object->value; }
    Counted<T>* object;
};
// The same for a reference, which cannot be null.
template <class T>
struct ObjectReference : Object<T> {
    explicit ObjectReference(const Place& at) : Object<T>(at), place(at) {}
    void read() {
        if (this->object == nullptr) place.refuse("must not be null");
    }
    T& pass() const { return this->object->value; }
    Place place;
};

// A text that is read; none is null.
struct Text : Converter {
    explicit Text(const Place& at) : place(at), value(at.handle<const TextValue>()) {}
    void read() {
        const std::string& text = value->text;
        if (std::memchr(text.data(), '\0', text.size()) != nullptr) {
            place.refuse("holds a character 0, where the text would end");
        }
    }
    const char* pass() const { return value->given ? value->text.c_str() : nullptr; }
    Place place;
    const TextValue* value;
};

// A string that is written, and read before.
struct String : Converter {
    explicit String(const Place& place) : given(place.handle<std::string>()) {}
    void read() { text.Assign(given->data(), given->size()); }
    CStringUTF8* pass() { return &text; }
    void write_values() { given->assign(text, static_cast<std::size_t>(text.GetLength())); }
    std::string* given;
    CStringUTF8 text;
};
struct StringReference : String {
    using String::String;
    CStringUTF8& pass() { return text; }
};
// A string that is read only.
struct StringRead : Converter {
    explicit StringRead(const Place& place) : given(place.handle<const std::string>()) {}
    void read() { text.Assign(given->data(), given->size()); }
    CStringUTF8* pass() { return &text; }
    const std::string* given;
    CStringUTF8 text;
};
struct StringReadReference : StringRead {
    using StringRead::StringRead;
    const CStringUTF8& pass() const { return text; }
};

// A number that is written, and read before: the variable may be an element of an array that the
// call changes, so the function gets a copy.
template <class T>
struct Variable : Converter {
    explicit Variable(const Place& place) : given(place.handle<void>()) {}
    void read() { std::memcpy(&value, given, sizeof value); }
    T* pass() { return &value; }
    void write_values() { std::memcpy(given, &value, sizeof value); }
    void* given;
    T value{};
};
template <class T>
struct VariableReference : Variable<T> {
    using Variable<T>::Variable;
    T& pass() { return this->value; }
};

// An optional output for which the script passes none.
template <class T>
struct Nothing : Converter {
    explicit Nothing(const Place& at) : place(at) {}
    void read() {
        if (place.handle<const TextValue>()->given) place.refuse("is a variable, or none");
    }
    T* pass() const { return nullptr; }
    Place place;
};

// --- arrays

inline void copy_in(as::CScriptArray& from, CWBOStringArray& to) {
    const auto* const texts = static_cast<const std::string* const*>(from.GetBuffer());
    for (as::asUINT i = 0; i < from.GetSize(); ++i) to.AddText(*texts[i]);
}
template <class T>
void copy_in(as::CScriptArray& from, CArray<T, T>& to) {
    const as::asUINT size = from.GetSize();
    to.SetSize(static_cast<int>(size));
    if (size != 0) std::memcpy(to.GetData(), from.GetBuffer(), size * sizeof(T));
}
// Gives the array a size; an exception of the script when there is no memory for it.
inline bool resize(as::CScriptArray& array, as::asUINT size) {
    if (array.GetSize() != size) array.Resize(size);
    return array.GetSize() == size;
}
inline void copy_out(CWBOStringArray& from, as::CScriptArray& to, as::asUINT start) {
    const int size = from.GetSize();
    if (!resize(to, start + static_cast<as::asUINT>(size))) return;
    for (int i = 0; i < size; ++i) {
        const CStringUTF8& text = from.ElementAt(i);
        auto& string = *static_cast<std::string*>(to.At(start + static_cast<as::asUINT>(i)));
        string.assign(text, static_cast<std::size_t>(text.GetLength()));
    }
}
template <class T>
void copy_out(CArray<T, T>& from, as::CScriptArray& to, as::asUINT start) {
    const auto size = static_cast<as::asUINT>(from.GetSize());
    if (!resize(to, start + size) || size == 0) return;
    std::memcpy(static_cast<T*>(to.GetBuffer()) + start, from.GetData(), size * sizeof(T));
}

enum class Use { kIn, kInOut, kAppends };

// A script array. What a call appends is collected apart, so that appending to a long array in a
// loop costs what is appended.
template <class Array, Use kUse>
struct ArrayArgument : Converter {
    explicit ArrayArgument(const Place& place) : given(place.handle<as::CScriptArray>()) {}
    ArrayArgument(const ArrayArgument&) = delete;
    ArrayArgument& operator=(const ArrayArgument&) = delete;
    ~ArrayArgument() {
        if (given != nullptr) given->Release();
    }
    void read() {
        if (given != nullptr && kUse != Use::kAppends) copy_in(*given, object.array());
    }
    UXScriptObject* pass() { return given == nullptr ? nullptr : &object; }
    void write_arrays() {
        if (given == nullptr || kUse == Use::kIn) return;
        copy_out(object.array(), *given, kUse == Use::kAppends ? given->GetSize() : 0);
    }
    as::CScriptArray* given;
    UXScriptArray<Array> object;
};
// The array itself, for functions of C++.
template <class Array, Use kUse>
struct ArrayPointer : ArrayArgument<Array, kUse> {
    using ArrayArgument<Array, kUse>::ArrayArgument;
    Array* pass() { return this->given == nullptr ? nullptr : &this->object.array(); }
};
template <class Array, Use kUse>
struct ArrayReference : ArrayArgument<Array, kUse> {
    explicit ArrayReference(const Place& at) : ArrayArgument<Array, kUse>(at), place(at) {}
    void read() {
        if (this->given == nullptr) place.refuse("must not be null");
        ArrayArgument<Array, kUse>::read();
    }
    Array& pass() { return this->object.array(); }
    Place place;
};
using Ints = CArray<int, int>;
using Doubles = CArray<double, double>;
using Bools = CArray<bool, bool>;
using Strings = CWBOStringArray;

// --- the call

template <class Result>
void return_result(as::asIScriptGeneric* call, const Result& result) {
    if constexpr (std::is_same_v<Result, CStringUTF8>) {
        return_value<std::string>(call, standard(result));
    } else {
        return_value<Result>(call, result);
    }
}

template <auto kFunction, class... Arguments, std::size_t... kIndex>
void call_with(as::asIScriptGeneric* call, std::index_sequence<kIndex...>) {
    std::tuple<Arguments...> arguments(Place{call, kIndex}...);
    guarded([&] {
        (std::get<kIndex>(arguments).read(), ...);
        if constexpr (std::is_void_v<decltype(kFunction(std::get<kIndex>(arguments).pass()...))>) {
            kFunction(std::get<kIndex>(arguments).pass()...);
        } else {
            return_result(call, kFunction(std::get<kIndex>(arguments).pass()...));
        }
        (std::get<kIndex>(arguments).write_values(), ...);
        (std::get<kIndex>(arguments).write_arrays(), ...);
    });
}
template <auto kFunction, class... Arguments>
void call(as::asIScriptGeneric* generic) {
    call_with<kFunction, Arguments...>(generic, std::index_sequence_for<Arguments...>());
}

// What the generator writes a table of.
struct Row {
    const char* declaration;
    void (*call)(as::asIScriptGeneric*);
};
extern const Row kRows[];
extern const std::size_t kRowCount;

}  // namespace uxscript
