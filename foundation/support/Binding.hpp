// Binding<T>: a two-way connection to a value somewhere else, a getter and a setter, as a
// user interface holds it for an editable field.
#pragma once

#include <functional>

namespace iconwright {

template <class T>
struct Binding {
  std::function<T()> get;
  std::function<void(const T&)> set;

  [[nodiscard]] T operator()() const { return get(); }
};

}  // namespace iconwright
