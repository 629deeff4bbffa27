#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "components/base/RunTimeError.h"
#include "components/controls/Control.h"

namespace kw {

// An array of controls of one type and name. Items 0 to `designCount` - 1 exist from design time; further ones are
// loaded as hidden copies of item 0 into the same container. T is made by T(name) and copied by T::LoadFrom(const T&).
template <class T>
class ControlArray {
public:
  static constexpr std::int32_t HighestIndex = 32767;

  ControlArray(std::string arrayName, std::int16_t itemsOfDesign)
      : name(std::move(arrayName)), designCount(itemsOfDesign) {
    for (std::int16_t i = 0; i < designCount; ++i) items[i] = NewItem(i);
  }

  const std::string& Name() const { return name; }

  // Joins the items' events to the editor's procedures: called for each item that exists and, from now on, for each
  // that is loaded.
  void ConnectItems(std::function<void(T&)> newConnect) {
    connect = std::move(newConnect);
    for (const auto& item : items) connect(*item.second);
  }

  // Raises ControlArrayElementDoesNotExist if no item has that index.
  T& operator()(std::int32_t index) const {
    const auto found = items.find(index);
    if (found == items.end()) RaiseMissingElement(index);
    return *found->second;
  }

  // As above, for work that a host may interrupt: an item that is unloaded meanwhile lives on without a container.
  std::shared_ptr<T> Share(std::int32_t index) const {
    const auto found = items.find(index);
    if (found == items.end()) RaiseMissingElement(index);
    return found->second;
  }

  bool IsLoaded(std::int32_t index) const { return items.contains(index); }

  // Raises InvalidControlArrayIndex out of range, ObjectAlreadyLoaded if the item is there.
  T& Load(std::int32_t index) {
    if (index < 0 || index > HighestIndex) Raise(ErrorNumber::InvalidControlArrayIndex);
    if (IsLoaded(index)) Raise(ErrorNumber::ObjectAlreadyLoaded);
    // Only a whole item becomes one of the array; that needs no memory any more.
    Items made;
    T& item = *(made[index] = NewItem(static_cast<std::int16_t>(index)));
    const T& original = *items.at(0);
    item.LoadFrom(original);
    item.SetVisible(false);
    if (connect) connect(item);
    item.SetContainer(original.Container());
    items.merge(made);
    return item;
  }

  // Raises ControlArrayElementDoesNotExist, or CannotUnloadDesignTimeControl for an item of design time.
  void Unload(std::int32_t index) {
    const auto found = items.find(index);
    if (found == items.end()) RaiseMissingElement(index);
    if (index < designCount) Raise(ErrorNumber::CannotUnloadDesignTimeControl);
    found->second->SetContainer(nullptr);  // its view leaves while the item is still whole
    items.erase(found);
  }

  std::int16_t LBound() const { return static_cast<std::int16_t>(items.begin()->first); }
  std::int16_t UBound() const { return static_cast<std::int16_t>(items.rbegin()->first); }
  std::int16_t Count() const { return static_cast<std::int16_t>(items.size()); }

  auto begin() const { return items.begin(); }
  auto end() const { return items.end(); }

private:
  using Items = std::map<std::int32_t, std::shared_ptr<T>>;

  std::shared_ptr<T> NewItem(std::int16_t index) const {
    auto item = std::make_shared<T>(name);
    item->SetIndex(index);
    return item;
  }

  std::string name;
  std::int16_t designCount;
  std::function<void(T&)> connect;
  Items items;
};

}  // namespace kw
