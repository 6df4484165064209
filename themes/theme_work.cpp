#include "themes/theme_work.h"

namespace pintle {

void ThemeWork::begin(const std::string& themeId, std::function<void(Turn)> work) {
    const auto [queue, isFree] = queues_->waiting.try_emplace(themeId);
    if (isFree)
        run(queues_, themeId, work);
    else
        queue->second.push_back(std::move(work));
}

void ThemeWork::run(const std::shared_ptr<Queues>& queues, const std::string& themeId,
                    const std::function<void(Turn)>& work) {
    // The end of a turn begins the next one. A turn that outlives endAll() belongs to an earlier table.
    work(Turn(nullptr, [weak = std::weak_ptr<Queues>(queues), themeId](std::nullptr_t) {
        const auto alive = weak.lock();
        if (!alive) return;
        const auto queue = alive->waiting.find(themeId);
        if (queue == alive->waiting.end()) return;
        if (queue->second.empty()) {
            alive->waiting.erase(queue);
            return;
        }
        const auto next = std::move(queue->second.front());
        queue->second.pop_front();
        run(alive, themeId, next);
    }));
}

void ThemeWork::endAll() {
    const auto past = std::exchange(queues_, std::make_shared<Queues>());
    past->waiting.clear();
    ended.emit();
    std::exchange(permit_, std::make_shared<DiskPermit>())->withdraw();
}

}  // namespace pintle
