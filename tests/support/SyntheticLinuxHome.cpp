#include "SyntheticLinuxHome.h"

namespace kestrow::test {

namespace {

struct File {
    const char* path;
    std::int64_t size;
};

// Sizes are distinct where it helps to tell items apart by their bytes.
constexpr File cacheFiles[] = {
    // Application caches in the XDG cache folder and in sandboxes.
    {".cache/thumbnails/normal/3f2a.png", 20000},
    {".cache/fontconfig/b1d5-le64.cache-7", 15000},
    {".cache/mesa_shader_cache/index", 12000},
    {".var/app/org.gimp.GIMP/cache/gegl-0.4/swap/1", 30000},
    {".var/app/org.mozilla.firefox/cache/fontconfig/c2.cache-7", 1000},
    {"snap/spotify/common/.cache/spotify/Data/a1", 25000},
    {"snap/code/150/.cache/mesa_shader_cache/index", 3000},

    // Browsers.
    {".cache/mozilla/firefox/k1.default-release/cache2/entries/E1", 27000},
    {".var/app/org.mozilla.firefox/cache/mozilla/firefox/f2.default/cache2/entries/E2", 40000},
    {"snap/firefox/common/.cache/mozilla/firefox/s3.default/cache2/entries/E3", 35000},
    {".cache/google-chrome/Default/Cache/Cache_Data/data_0", 33000},
    {".cache/chromium/Default/Cache/Cache_Data/data_1", 16000},
    {".cache/BraveSoftware/Brave-Browser/Default/Cache/Cache_Data/data_2", 13000},
    {".cache/microsoft-edge/Default/Cache/Cache_Data/data_3", 21000},
    {".cache/vivaldi/Default/Cache/Cache_Data/data_4", 9000},
    {".cache/opera/Cache/Cache_Data/data_5", 11000},

    // Package managers and build tools.
    {".cache/pip/http-v2/a/b/c/0f1e", 18000},
    {".cache/go-build/ab/abcdef0123-d", 22000},
    {".cache/yarn/v6/npm-left-pad-1.3.0/package.json", 7000},
    {".local/share/pnpm/store/v3/files/00/abc123", 14000},
    {".cache/pnpm/metadata/registry.npmjs.org/react.json", 3000},
    {".cache/bazel/_bazel_dev/install/4f2c/embedded_tools/x", 19000},
    {".cache/ccache/0/1/a.o", 6000},
    {".ccache/2/b.o", 2000},
    {".cache/sccache/0/c", 5000},
    {".cache/node-gyp/20.11.0/include/node/node.h", 4000},
    {".cache/typescript/5.4/node_modules/@types/node/index.d.ts", 3500},
    {".cache/electron/electron-v29.1.0-linux-x64.zip", 24000},
    {".cache/electron-builder/appimage/appimage-12.0.1/AppRun", 8000},
    {".cache/pre-commit/repo4k2j/hook", 4500},
    {".cache/ms-playwright/chromium-1112/chrome-linux/chrome", 45000},
    {".cache/Cypress/13.6.0/Cypress/Cypress", 28000},
    {".cache/deno/deps/https/deno.land/8a9b", 5500},
    {".cache/composer/files/symfony/console/1.zip", 6500},
    {".m2/repository/org/apache/commons/commons-lang3/3.14.0/commons-lang3-3.14.0.jar", 60000},
    {"miniconda3/pkgs/numpy-1.26.4-py312/lib/_multiarray.so", 50000},
    {".conda/pkgs/urls.txt", 100},
    {".rustup/toolchains/stable-x86_64-unknown-linux-gnu/lib/librustc_driver.so", 80000},
    {".rustup/toolchains/nightly-x86_64-unknown-linux-gnu/bin/rustc", 40000},

    // Editors.
    {".cache/JetBrains/IntelliJIdea2024.1/caches/content.dat", 26000},
    {".cache/JetBrains/PyCharm2024.1/index/stubs", 17000},
    {".config/Code/Cache/Cache_Data/data_0", 7000},
    {".config/Code/CachedData/8b3775/chrome/js/1", 9000},
    {".config/Code/CachedExtensionVSIXs/ms-python.python-2024.4.0", 11000},
    {".config/Code/Code Cache/js/index", 5000},
    {".config/Code/GPUCache/data_0", 2000},
    {".config/Code - OSS/Cache/Cache_Data/data_1", 1200},
    {".config/VSCodium/GPUCache/data_1", 1500},
    {".config/Cursor/CachedData/c1/x", 2500},

    // Models.
    {".cache/torch/hub/checkpoints/resnet50-0676ba61.pth", 100000},
    {".cache/torch/sentence_transformers/all-MiniLM-L6-v2/model.safetensors", 90000},
    {".local/share/nomic.ai/GPT4All/orca-mini-3b.gguf", 120000},
    {".cache/huggingface/hub/models--bert-base-uncased/blobs/7d2e", 70000},
    {".ollama/models/blobs/sha256-6a07", 50000},

    // Containers.
    {".docker/desktop/vms/0/data/Docker.raw", 64000},
    {".local/share/docker/overlay2/l/ABCD/file", 33000},
    {".local/share/containers/storage/overlay/abc/diff/file", 44000},
    {".local/share/containers/podman/machine/qemu/podman-machine-default.qcow2", 52000},

    // Logs of the X server's run before the last.
    {".local/share/xorg/Xorg.0.log.old", 2500},
};

constexpr File decoyFiles[] = {
    {".mozilla/firefox/k1.default-release/places.sqlite", 5000},
    {".config/google-chrome/Default/Preferences", 3000},
    {".config/Code/User/settings.json", 400},
    {".config/Code/User/globalStorage/state.vscdb", 2000},
    {".config/JetBrains/IntelliJIdea2024.1/options/ide.general.xml", 600},
    {".var/app/org.gimp.GIMP/data/gimp/2.10/brushes/b.gbr", 4000},
    {".var/app/org.gimp.GIMP/config/GIMP/2.10/gimprc", 300},
    {"snap/spotify/common/Downloads/track.ogg", 6000},
    {"snap/code/150/.config/Code/User/settings.json", 200},
    {".local/share/Trash/files/old-notes.txt", 7000},
    {".local/share/keyrings/login.keyring", 1200},
    {".docker/config.json", 100},
    {".m2/settings.xml", 500},
    {".rustup/settings.toml", 100},
    {".conda/environments.txt", 50},
    {".local/share/xorg/Xorg.0.log", 2000},
    {".xsession-errors", 1000},
    // Right in the home: never removable, so never offered.
    {".xsession-errors.old", 3000},
};

} // namespace

SyntheticLinuxHome::SyntheticLinuxHome()
{
    for (const File& file : cacheFiles) {
        writeFile(QLatin1String(file.path), file.size);
        m_cacheBytes += file.size;
    }
    for (const File& file : decoyFiles) {
        writeFile(QLatin1String(file.path), file.size);
        m_decoys.append(QLatin1String(file.path));
    }
    // Snap's link to the revision in use is no second cache.
    makeSymbolicLink(QStringLiteral("snap/code/current"), QStringLiteral("150"));
    makeDirectory(QStringLiteral("opt"));
}

} // namespace kestrow::test
