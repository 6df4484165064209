#include "app/list_keys.h"

#include <algorithm>

namespace pintle {
namespace {

int stepFrom(const ListMark& list, int step) { return list.marked ? *list.marked + step : list.entry; }

}  // namespace

ListAnswer answerKey(ListKey key, const ListMark& list) {
    if (list.count <= 0) return {};
    int to = 0;
    switch (key) {
        case ListKey::tap:
        case ListKey::remove: {
            if (!list.marked || *list.marked < 0 || *list.marked >= list.count) return {};
            if (!list.inSight) return {list.marked, ListAnswer::Act::none};
            return {list.marked, key == ListKey::tap ? ListAnswer::Act::tap : ListAnswer::Act::remove};
        }
        case ListKey::down:
            to = stepFrom(list, 1);
            break;
        case ListKey::up:
            to = stepFrom(list, -1);
            break;
        case ListKey::home:
            to = 0;
            break;
        case ListKey::end:
            to = list.count - 1;
            break;
        case ListKey::pageDown:
            to = stepFrom(list, list.page);
            break;
        case ListKey::pageUp:
            to = stepFrom(list, -list.page);
            break;
    }
    return {std::clamp(to, 0, list.count - 1), ListAnswer::Act::none};
}

}  // namespace pintle
