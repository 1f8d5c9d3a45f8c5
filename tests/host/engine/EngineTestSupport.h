// The engine as the tests reach it: its exported host functions, resolved with dlsym on the
// loaded bundle exactly as a plug-in's binding does, with their wire signatures; and the C++
// API on the same (single) engine image.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>

#include "Engine.h"
#include "HostTypes.h"
#include "TestSupport.h"

namespace enginetest {

constexpr uint32_t kStamp = 0x19500000;

struct HostFunctions {
  EXTGF2005a* (*LoadTGF)(uint32_t, int, int, int, int, uint32_t);
  int (*InsertEXENTRY)(EXTGF2005a*, int, int, uint32_t);
  int (*DeleteEXENTRY)(EXTGF2005a*, int, int, uint32_t);
  int (*SaveTGF)(EXTGF2005a*, uint32_t);
  int (*FreeTGF)(EXTGF2005a*, uint32_t);
  int (*RebeamRegion)(EREGION*, void*, uint32_t);
  int (*LoadEData)(uint32_t, uint16_t*, void*, uint32_t*, uint32_t);
  int (*SaveEData)(uint32_t, uint16_t*, void*, uint32_t, uint32_t);
  int (*CreateEData)(uint32_t, uint16_t*, void*, uint32_t, uint32_t);
  int (*DeleteEData)(uint32_t, uint16_t*, uint32_t);
  int (*NextEData)(uint32_t, uint16_t*, void*, uint32_t, uint32_t);
  int (*PreviousEData)(uint32_t, uint16_t*, void*, uint32_t, uint32_t);
  intptr_t (*StartScriboEdit)(const char*, uint32_t);
  int (*EndScriboEdit)(uint32_t);
  void (*CancelScriboEdit)(uint32_t);
  void* (*StartMassEdit)(void*, uint32_t, uint32_t);
  int (*MassEditProgress)(void*, int, int, int, int, uint32_t);
  void (*EndMassEdit)(void*, int, uint32_t);
  intptr_t (*Dialog)(int, SF_DialogHandlerUPP, OpaqueCocoaWindow*, int, void*, uint32_t);
  void (*EndDialog)(OpaqueCocoaWindow*, uint32_t);
  void (*SetDlgFocus)(OpaqueCocoaWindow*, int, uint32_t);
  int32_t (*GetDlgCntlVal)(OpaqueCocoaWindow*, int, char*, int, uint32_t);
  void (*SetDlgCntlVal)(OpaqueCocoaWindow*, int, const char*, int32_t, uint32_t);
  void (*EnableDlgItem)(OpaqueCocoaWindow*, int, int, uint32_t);
  int (*IsCocoaSXDLG)(OpaqueCocoaWindow*, uint32_t);
  int (*IsMachO)(uint32_t);
  int (*GetCurERegions)(void*, EREGION*, EREGION*, uint32_t);
  void (*SetCurERegionMac)(EREGION*, uint32_t);
  int (*GetMaxLayers)(uint32_t);
  int (*GetShowLayer)(int, uint32_t);
  int (*SlotToInst)(int, uint32_t, uint32_t);
};

struct PlatformRect {
  double x, y, width, height;
};

class EngineTest : public ::testing::Test {
protected:
  void SetUp() override {
    handle_ = scribotest::LoadBundle(scribotest::BuildDir() / "NotationEngine.bundle");
    Resolve(host.LoadTGF, "SX_LoadTGF");
    Resolve(host.InsertEXENTRY, "SX_InsertEXENTRY");
    Resolve(host.DeleteEXENTRY, "SX_DeleteEXENTRY");
    Resolve(host.SaveTGF, "SX_SaveTGF");
    Resolve(host.FreeTGF, "SX_FreeTGF");
    Resolve(host.RebeamRegion, "SX_RebeamRegion");
    Resolve(host.LoadEData, "SX_LoadEData");
    Resolve(host.SaveEData, "SX_SaveEData");
    Resolve(host.CreateEData, "SX_CreateEData");
    Resolve(host.DeleteEData, "SX_DeleteEData");
    Resolve(host.NextEData, "SX_NextEData");
    Resolve(host.PreviousEData, "SX_PreviousEData");
    Resolve(host.StartScriboEdit, "SX_StartScriboEdit");
    Resolve(host.EndScriboEdit, "SX_EndScriboEdit");
    Resolve(host.CancelScriboEdit, "SX_CancelScriboEdit");
    Resolve(host.StartMassEdit, "SX_StartMassEdit");
    Resolve(host.MassEditProgress, "SX_MassEditProgress");
    Resolve(host.EndMassEdit, "SX_EndMassEdit");
    Resolve(host.Dialog, "SX_Dialog");
    Resolve(host.EndDialog, "SX_EndDialog");
    Resolve(host.SetDlgFocus, "SX_SetDlgFocus");
    Resolve(host.GetDlgCntlVal, "SX_GetDlgCntlVal");
    Resolve(host.SetDlgCntlVal, "SX_SetDlgCntlVal");
    Resolve(host.EnableDlgItem, "SX_EnableDlgItem");
    Resolve(host.IsCocoaSXDLG, "SX_IsCocoaSXDLG");
    Resolve(host.IsMachO, "SX_IsMachO");
    Resolve(host.GetCurERegions, "SX_GetCurERegions");
    Resolve(host.SetCurERegionMac, "SX_SetCurERegionMac");
    Resolve(host.GetMaxLayers, "SX_GetMaxLayers");
    Resolve(host.GetShowLayer, "SX_GetShowLayer");
    Resolve(host.SlotToInst, "SX_SlotToInst");
    engine().Reset();
    engine().SetAlertEcho(false);
  }

  void TearDown() override {
    EXPECT_EQ(engine().LoadedFrames(), 0) << "a test left frames loaded";
    dlclose(handle_);
  }

  template <class Fn> void Resolve(Fn& fn, const char* name) {
    fn = reinterpret_cast<Fn>(dlsym(handle_, name));
    ASSERT_NE(fn, nullptr) << name << " is not exported";
  }
  void* Symbol(const char* name) { return dlsym(handle_, name); }

  static scribo::engine::Engine& engine() { return scribo::engine::Engine::Instance(); }
  static scribo::engine::Document& doc() { return engine().document(); }

  HostFunctions host{};

private:
  void* handle_ = nullptr;
};

// A note entry of `duration` TDU with one note at `step`.
inline scribo::engine::EntrySpec Note(int16_t duration, int16_t step = 0, int32_t position = -1) {
  scribo::engine::EntrySpec spec;
  spec.duration = duration;
  spec.position = position;
  spec.notes = {{step, 0, 0}};
  return spec;
}

inline scribo::engine::EntrySpec Rest(int16_t duration) {
  scribo::engine::EntrySpec spec;
  spec.duration = duration;
  return spec;
}

} // namespace enginetest
