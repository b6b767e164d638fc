/// \file
/// Iteration over objects behind pointers, and predicates over them.
#ifndef VXGRID_TOOLKIT_CORE_ITERATORS_H
#define VXGRID_TOOLKIT_CORE_ITERATORS_H

#include <cstddef>     // for ptrdiff_t
#include <functional>  // for function
#include <iterator>    // for input_iterator_tag
#include <memory>      // for unique_ptr
#include <utility>     // for move
#include <vector>      // for vector

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// A walk over objects. What makes one hands it over to its caller, who best keeps it in a
/// `VXIter`.
template <class T>
class VXGRID_API VXIterBase {
 public:
  virtual ~VXIterBase() = default;
  /// The object that the walk stands on, null behind the last one.
  virtual T* Target() const = 0;
  virtual void Increment() = 0;
  virtual void ToFirst() = 0;
  /// A copy that stands on the same object, owned by the caller.
  virtual VXIterBase* CreateCopy() const = 0;
};

/// A walk over pointers that were gathered beforehand.
template <class T>
class VXGRID_API VXPointerIter : public VXIterBase<T> {
 public:
  explicit VXPointerIter(std::vector<T*> objects) : objects_(std::move(objects)) {}

  T* Target() const override { return at_ < objects_.size() ? objects_[at_] : nullptr; }
  void Increment() override { ++at_; }
  void ToFirst() override { at_ = 0; }
  VXPointerIter* CreateCopy() const override { return new VXPointerIter(*this); }

 private:
  std::vector<T*> objects_;
  std::size_t at_ = 0;
};

/// A walk as a value: `for (T& object : VXIter<T>(walk))`, or
/// `for (VXIter<T> object(walk); object; ++object)`.
template <class T>
class VXIter {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = T;
  using difference_type = std::ptrdiff_t;
  using pointer = T*;
  using reference = T&;

  VXIter() = default;
  /// Owns the walk from now on.
  VXIter(VXIterBase<T>* walk) : walk_(walk) {}
  VXIter(std::vector<T*> objects) : walk_(std::make_unique<VXPointerIter<T>>(std::move(objects))) {}
  VXIter(const VXIter& other) : walk_(other.walk_ ? other.walk_->CreateCopy() : nullptr) {}
  VXIter(VXIter&&) noexcept = default;
  VXIter& operator=(VXIter other) noexcept {
    walk_.swap(other.walk_);
    return *this;
  }
  ~VXIter() = default;

  T* Target() const { return walk_ ? walk_->Target() : nullptr; }
  explicit operator bool() const { return Target() != nullptr; }
  operator T*() const { return Target(); }
  T& operator*() const { return *Target(); }
  T* operator->() const { return Target(); }
  VXIter& operator++() {
    walk_->Increment();
    return *this;
  }
  void ToFirst() {
    if (walk_) walk_->ToFirst();
  }

  VXIter begin() const { return *this; }
  VXIter end() const { return VXIter(); }
  friend bool operator==(const VXIter& a, const VXIter& b) { return a.Target() == b.Target(); }
  friend bool operator!=(const VXIter& a, const VXIter& b) { return !(a == b); }

 private:
  std::unique_ptr<VXIterBase<T>> walk_;
};

/// A function object of one argument that can be handed on and copied without knowing its class.
/// The two flags say that the argument and the call are const.
template <class Argument, class Result, bool ConstArgument, bool ConstCall>
class VXUnaryFunction;

template <class Argument, class Result>
class VXGRID_API VXUnaryFunction<Argument, Result, true, true> {
 public:
  virtual ~VXUnaryFunction() = default;
  virtual Result operator()(const Argument& argument) const = 0;
  /// A copy, owned by the caller.
  virtual VXUnaryFunction* CreateCopy() const = 0;
};

/// Base of predicates over atoms, bonds and groups.
template <class T>
class VXGRID_API VXUnaryPredicate : public VXUnaryFunction<T, bool, true, true> {
 public:
  VXUnaryPredicate* CreateCopy() const override = 0;
};

/// Any callable as a predicate.
template <class T>
class VXGRID_API VXFunctionPredicate : public VXUnaryPredicate<T> {
 public:
  VXFunctionPredicate(std::function<bool(const T&)> function) : function_(std::move(function)) {}

  bool operator()(const T& argument) const override { return function_(argument); }
  VXFunctionPredicate* CreateCopy() const override { return new VXFunctionPredicate(*this); }

 private:
  std::function<bool(const T&)> function_;
};

}  // namespace VXCore

#endif
