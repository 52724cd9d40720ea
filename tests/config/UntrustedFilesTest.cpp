// Configuration files as a damaged or tampered device presents them: anything but a regular file
// of sane size is refused at once (a FIFO must not block set-up).
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "base/ConfigFile.h"
#include "effect/orlune.h"
#include "lad/LoudAbnormalDetecter.h"
#include "tests/support/DeviceRoot.h"
#include "tests/support/LogCapture.h"

namespace {

namespace fs = std::filesystem;
const char* const kTag = "orlune_mobile";

enum class Kind { Fifo, Directory, Oversized, Unreadable };

// Puts a file of `kind` at `devicePath`; an oversized file is sparse, so it costs no disk.
void Plant(const DeviceRoot& root, const std::string& devicePath, Kind kind) {
    const std::string host = root.HostPath(devicePath);
    fs::create_directories(fs::path(host).parent_path());
    fs::remove_all(host);
    if (kind == Kind::Fifo) {
        ASSERT_EQ(0, mkfifo(host.c_str(), 0644));
    } else if (kind == Kind::Directory) {
        fs::create_directory(host);
    } else {
        root.WriteFile(devicePath, "version=1\n");
        if (kind == Kind::Oversized) {
            fs::resize_file(host, ConfigFileLimit(ConfigFileKindOf(devicePath.c_str())) + 1);
        } else {
            chmod(host.c_str(), 0);
        }
    }
}

// Runs `read`; a reader blocked on a FIFO is released (a writer opens and closes it) so that the
// failure is reported instead of hanging the suite.
void RunWithin(const std::function<void()>& read, const std::string& hostFifo) {
    auto done = std::async(std::launch::async, read);
    if (done.wait_for(std::chrono::seconds(2)) == std::future_status::timeout) {
        ADD_FAILURE() << "the reader blocked";
        const int fd = open(hostFifo.c_str(), O_WRONLY | O_NONBLOCK);
        if (fd >= 0) {
            close(fd);
        }
    }
    done.wait();
}

TEST(UntrustedFiles, EveryReaderRefusesWhatIsNotARegularFileOfSaneSize) {
    const Kind kinds[] = {Kind::Fifo, Kind::Directory, Kind::Oversized, Kind::Unreadable};
    // Device path, the reader, and whether it behaved as for a missing file.
    using Outcome = std::function<bool()>;
    const std::tuple<const char*, Outcome> readers[] = {
            {"/odm/etc/kiv/kiv_config.xml",
             [] {
                 Orlune::KivReadConfigFromXML(false);
                 return PublishedTables().gRealMapTable.count(41) == 0;
             }},
            {"/odm/etc/kiv/kiv_config_vmap.xml",
             [] { return Orlune::KivReadConfigTableFromXML(false) == -1; }},
            {"/odm/etc/kiv/version.txt",
             [] { return Orlune::GetVersionInfo("/odm/etc/kiv/") == -1; }},
            {"/odm/etc/kiv/teh_config.bin",
             [] { return Orlune::ReadTEH(Orlune::gTehConfig, 9600) == -1; }},
            {"/proc/device-tree/audio_hw_config/product_name",
             [] {
                 Orlune::GetProductNameConfig();
                 return Orlune::gGetProductNameResult == 0;
             }},
            {"/odm/etc/kiv/lad_config_brisel.xml",
             [] {
                 LogCapture log;
                 android::sp<android::LoudAbnormalDetecter> lad = new android::LoudAbnormalDetecter;
                 lad->LoadLadProc(1);
                 return log.Has("lad config is not exist");
             }},
    };
    for (Kind kind : kinds) {
        if (kind == Kind::Unreadable && geteuid() == 0) {
            continue;  // root reads any file
        }
        for (const auto& [path, missing] : readers) {
            SCOPED_TRACE(testing::Message() << path << " kind " << static_cast<int>(kind));
            DeviceRoot root;
            root.WriteKiv("version.txt", "version=1\n");
            Plant(root, path, kind);
            LogCapture log;
            bool treatedAsMissing = false;
            RunWithin([&] { treatedAsMissing = missing(); }, root.HostPath(path));
            EXPECT_TRUE(treatedAsMissing) << log.Dump();
            const int refusals =
                    log.CountContaining(std::string("config file ") + path + " refused: ", kTag);
            EXPECT_EQ(kind == Kind::Unreadable ? 0 : 1, refusals > 0 ? 1 : 0) << log.Dump();
        }
    }
}

}  // namespace
