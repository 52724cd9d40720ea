// Which main XML file is read: the local (product, region or generic) file, or a newer
// over-the-air copy offered by the customisation service.
#pragma once

// Writes the chosen device path into `out` (kPathBytes) and returns true; returns false, after
// logging, when there is no file to read. `downloaded` tells whether the over-the-air file was
// chosen; `local` (kPathBytes) then receives the local file to fall back on, or "" when there
// is none.
bool ChooseMainConfigFile(bool musicRegionEnable, char* out, bool* downloaded, char* local);
