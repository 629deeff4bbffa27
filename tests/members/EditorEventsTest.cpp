#include "members/EditorEvents.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

namespace kw {
namespace {

// A container that can do in an event what it likes.
class Container : public EditorEvents {
public:
  using EditorEvents::Raise;
  void Raise(EventId event, std::span<const Argument> arguments) override {
    raised.push_back(event);
    handler(arguments);
  }
  void PropertyChanged(PropertyId /*property*/) override {}

  std::vector<EventId> raised;
  std::function<void(std::span<const Argument>)> handler = [](auto) {};
};

TEST(EditorEvents, AHandlerChangesTheArgumentsOfTheOneWhoRaises) {
  Container container;
  container.handler = [](std::span<const EditorEvents::Argument> arguments) {
    *std::get<std::string*>(arguments[0]) = "changed";
    *std::get<std::int16_t*>(arguments[1]) = std::numeric_limits<std::int16_t>::min();
    std::get<std::string*>(arguments[0])->append(100'000, 'x');
  };
  std::string path = "page.tif";
  std::int16_t page = 3;
  std::int16_t pages = 4;
  container.Raise<EventId::NewPageCreated>(path, page, pages);
  EXPECT_EQ(path, "changed" + std::string(100'000, 'x'));
  EXPECT_EQ(page, -32768);
  EXPECT_EQ(pages, 4);
}

TEST(EditorEvents, AHandlerThatRaisesTheSameEventHasArgumentsOfItsOwn) {
  Container container;
  container.handler = [&, depth = 0](std::span<const EditorEvents::Argument> arguments) mutable {
    if (++depth > 1) {
      *std::get<std::int16_t*>(arguments[0]) = 9;
      return;
    }
    std::int16_t inner = 2;
    container.Raise<EventId::PageChanged>(inner);
    EXPECT_EQ(inner, 9);
  };
  std::int16_t page = 1;
  container.Raise<EventId::PageChanged>(page);
  EXPECT_EQ(page, 1);
  EXPECT_EQ(container.raised, (std::vector{EventId::PageChanged, EventId::PageChanged}));
}

TEST(EditorEvents, WhatAHandlerThrowsReachesTheOneWhoRaises) {
  Container container;
  container.handler = [](auto) { throw std::bad_alloc(); };
  std::int16_t page = 1;
  EXPECT_THROW(container.Raise<EventId::PageChanged>(page), std::bad_alloc);
}

TEST(EditorEvents, ArgumentsComeInTheOrderOfTheRow) {
  Container container;
  std::int16_t number = 5;
  std::string message = "text";
  container.handler = [&](std::span<const EditorEvents::Argument> arguments) {
    ASSERT_EQ(arguments.size(), 2U);
    EXPECT_EQ(std::get<std::int16_t*>(arguments[0]), &number);
    EXPECT_EQ(std::get<std::string*>(arguments[1]), &message);
  };
  container.Raise<EventId::ErrorOccured>(number, message);
  EXPECT_EQ(container.raised, std::vector{EventId::ErrorOccured});
}

TEST(EditorEvents, AnEventMayHaveNoArguments) {
  Container container;
  container.handler = [](std::span<const EditorEvents::Argument> arguments) { EXPECT_TRUE(arguments.empty()); };
  container.Raise<EventId::MultipageFileSaved>();
  EXPECT_EQ(container.raised, std::vector{EventId::MultipageFileSaved});
}

}  // namespace
}  // namespace kw
