#include "trend/trend_feed.h"

#include <map>

namespace recscope {

namespace {

std::map<int, TrendFeed> &Feeds() {
  static std::map<int, TrendFeed> feeds;
  return feeds;
}

}  // namespace

void SetTrendFeed(int slot, TrendFeed feed) { Feeds()[slot] = std::move(feed); }

void ClearTrendFeed(int slot) { Feeds().erase(slot); }

const TrendFeed *FindTrendFeed(int slot) {
  const auto found = Feeds().find(slot);
  return found == Feeds().end() ? nullptr : &found->second;
}

}  // namespace recscope
