#include "KestrowProcess.h"
#include "SyntheticHome.h"
#include "SyntheticLinuxHome.h"

#include <gtest/gtest.h>

using namespace kestrow::test;

TEST(ScanCommandCoverage, AFullScanReachesEveryScannerOfAnotherHome)
{
    const SyntheticHome home(SyntheticHome::Access::fullDiskAccess);
    const KestrowRun run = runKestrow({QStringLiteral("scan"), QStringLiteral("--home"), home.path()});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    for (const char* description :
         {"uv Cache (wheels-v1)", "HuggingFace Model: meta-llama/Llama-3-8B", "OpenAI Whisper Model: base.pt",
          "Ollama Local Model Layers & Manifests (GGUF)", "LM Studio Model: TheBloke",
          "vLLM Model Weights & Kernel Cache", "Docker VM Disk Image [", "Xcode DerivedData: ModuleCache.noindex",
          "Xcode Release Archives (.xcarchive)", "Stray node_modules in User Home Root Directory",
          "com.spotify.client Cache", "JetBrains Log Data", "Legacy User Crash Reports", "Legacy Mail Downloads",
          "Safari WebKit Container Cache", "Mozilla Firefox Profile Caches"})
        EXPECT_TRUE(run.out.contains(QLatin1String(description))) << description;
    EXPECT_FALSE(run.out.contains(QStringLiteral("Projects/web-app/node_modules")));
}

TEST(ScanCommandCoverage, AnotherHomesXdgFoldersAreItsOwnAndTargetsSwitchOff)
{
    const SyntheticLinuxHome home;
    // The environment now speaks for a second home; the scanned one keeps its own folders.
    const TestHome running;
    const KestrowRun run = runKestrow({QStringLiteral("scan"), QStringLiteral("--home"), home.path(),
                                       QStringLiteral("--disable-target"), QStringLiteral("browserCaches")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    for (const char* description : {"thumbnails Cache", "Go Build Cache", "Visual Studio Code Cache (CachedData)",
                                    "org.gimp.GIMP Cache (Flatpak)", "Xorg.0.log.old Log Data"})
        EXPECT_TRUE(run.out.contains(QLatin1String(description))) << description;
    EXPECT_FALSE(run.out.contains(QStringLiteral("Mozilla Firefox Profile Cache"))) << run.out.toStdString();
    EXPECT_FALSE(run.out.contains(QStringLiteral("mozilla Cache")));
}
