#include "tests/support/Faults.h"

#include <csetjmp>
#include <csignal>
#include <cstdio>

namespace Zorvan::Test {
namespace {

sigjmp_buf resumePoint;
volatile std::sig_atomic_t isArmed = 0;
char lastFault[96];

void handle(int signal, siginfo_t* info, void*) {
  if (!isArmed) {
    std::signal(signal, SIG_DFL);
    return;
  }
  std::snprintf(lastFault, sizeof lastFault, "%s at address %p",
                signal == SIGILL ? "illegal instruction" : "access to unreadable memory", info->si_addr);
  siglongjmp(resumePoint, 1);
}

void arm() {
  struct sigaction action {};
  action.sa_sigaction = handle;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  for (const int signal : {SIGSEGV, SIGBUS, SIGILL}) sigaction(signal, &action, nullptr);
}

}  // namespace

std::string faultOf(const std::function<void()>& call) {
  static const bool armed = (arm(), true);
  static_cast<void>(armed);
  lastFault[0] = 0;
  if (sigsetjmp(resumePoint, 1) == 0) {
    isArmed = 1;
    call();
  }
  isArmed = 0;
  return lastFault;
}

}  // namespace Zorvan::Test
