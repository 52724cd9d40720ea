// Configuration of the host stand-in detector.
//
// One file per detection type under the device root ($ORLUNE_DEVICE_ROOT, or "/" when unset):
//   type 0  /odm/etc/kiv/lad_config_dts.xml
//   type 1  /odm/etc/kiv/lad_config_brisel.xml
//   type 2  /odm/etc/kiv/lad_config_lowlatency.xml
//   type 3  /odm/etc/kiv/lad_config_dsp_orlune.xml
// Format: a small XML element whose `limit_dbfs` attribute is the output peak level, in dB
// relative to full scale, above which the output counts as loud:
//   <lad_config limit_dbfs="-3.0"/>
// A missing file, a missing attribute or a value that is not a finite number gives the default.
#pragma once

namespace lad_standin {

constexpr float kDefaultLimitDbfs = -0.1f;
constexpr int kConfigTypes = 4;

// Limit of `type`; `found` tells whether the file supplied it.
float ReadLimitDbfs(int type, bool* found);

}  // namespace lad_standin
