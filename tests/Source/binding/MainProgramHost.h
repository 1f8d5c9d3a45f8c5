// What the test program's own host functions received.
#pragma once

#include <cstdint>
#include <string>

struct MainHostAlert {
  void* owner = nullptr;
  uint32_t kind = 0;
  int32_t id = 0;
  std::string text;
  uint32_t version = 0;
};

const MainHostAlert& LastMainHostAlert();
int MainHostAlertCount();
