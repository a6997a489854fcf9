#include "platform/foundation/thread.h"

namespace tarnix {

NSThread& NSThread::currentThread() {
  thread_local NSThread thread;
  return thread;
}

}  // namespace tarnix
