#include "platform/combine/timer_publisher.h"

#include <utility>

namespace tarnix {

Publisher<Date> Timer::publish(RunLoop::Duration every, RunLoop::TimerOptions options) {
  return Publisher<Date>([every, options](Publisher<Date>::Receive receive) {
    auto tick = [receive = std::move(receive)] { receive(Date::now()); };
    auto timer = RunLoop::main().scheduleTimer(every, options, std::move(tick));
    return AnyCancellable([timer = std::move(timer)]() mutable { timer.cancel(); });
  });
}

}  // namespace tarnix
