#include <algorithm>
#include <vector>

#include "steps.h"

namespace Coins {

std::deque<Object> inReadingOrder(const std::deque<Object>& objects) {
  std::vector<const Object*> order;
  for (const Object& object : objects) order.push_back(&object);
  // Twice the row of an object's middle, which is a whole number.
  const auto middle = [](const Object* object) {
    return 2 * object->box.row + object->box.height;
  };
  std::sort(order.begin(), order.end(), [&](const Object* a, const Object* b) {
    return middle(a) < middle(b);
  });

  // A line contains the objects whose middles are above the lower edge of its
  // first object.
  for (auto line = order.begin(); line != order.end();) {
    const int lower = (*line)->box.row + (*line)->box.height;
    const auto next = std::find_if(
        line, order.end(),
        [&](const Object* object) { return middle(object) >= 2 * lower; });
    std::sort(line, next, [](const Object* a, const Object* b) {
      return a->box.column < b->box.column;
    });
    line = next;
  }

  std::deque<Object> ordered;
  for (const Object* object : order) ordered.emplace_back() = *object;
  return ordered;
}

}  // namespace Coins
