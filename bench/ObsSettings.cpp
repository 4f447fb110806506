// SPDX-License-Identifier: MIT
#include "bench/ObsSettings.h"

#include "bench/Report.h"

namespace glimmerpane::bench::obsSettings
{

namespace
{

QString globalSettings()
{
    return QStringLiteral("[General]\nFirstRun=true\nEnableAutoUpdates=false\n"
                          "[Basic]\nProfile=Bench\nProfileDir=Bench\nSceneCollection=Bench\n"
                          "SceneCollectionFile=Bench\n"
                          "[BasicWindow]\nPreviewEnabled=false\nSaveProjectors=true\n");
}

QString profile(QSize size)
{
    return QStringLiteral("[General]\nName=Bench\n[Video]\nBaseCX=%1\nBaseCY=%2\nOutputCX=%1\n"
                          "OutputCY=%2\nFPSType=0\nFPSCommon=60\n")
        .arg(size.width())
        .arg(size.height());
}

/** A projector's monitor of -1 is a window, its type 1 a scene; an alignment of 5 is top left. */
QString sceneCollection(QSize screen, const QRect &area)
{
    return QStringLiteral(
               R"({"name": "Bench", "current_scene": "Scene", "current_program_scene": "Scene",
    "scene_order": [{"name": "Scene"}],
    "saved_projectors": [{"monitor": -1, "type": 1, "name": "Scene"}],
    "sources": [
        {"id": "xshm_input", "name": "Screen", "settings": {"show_cursor": true,
            "cut_left": %1, "cut_top": %2, "cut_right": %3, "cut_bot": %4}},
        {"id": "scene", "name": "Scene", "settings": {"id_counter": 1, "items": [
            {"name": "Screen", "id": 1, "visible": true, "align": 5,
                "pos": {"x": 0.0, "y": 0.0}, "scale": {"x": 1.0, "y": 1.0}}]}}
    ]}
)")
        .arg(area.left())
        .arg(area.top())
        .arg(screen.width() - area.right() - 1)
        .arg(screen.height() - area.bottom() - 1);
}

} // namespace

Result<QProcessEnvironment> write(const Desktop &desktop, const QRect &area)
{
    auto environment = desktop.environment();
    const QDir home(environment.value(QStringLiteral("XDG_RUNTIME_DIR")));
    const QDir folder(environment.value(QStringLiteral("XDG_CONFIG_HOME"))
                      + QStringLiteral("/obs-studio"));
    const std::pair<QString, QString> files[] = {
        {QStringLiteral("global.ini"), globalSettings()},
        {QStringLiteral("basic/profiles/Bench/basic.ini"), profile(area.size())},
        {QStringLiteral("basic/scenes/Bench.json"), sceneCollection(desktop.screenSize(), area)}};
    for (const auto &[name, content] : files) {
        const QString path = folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        if (const auto written = writeText(path, content); !written) {
            return testing::failure(written.error());
        }
    }
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
    environment.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("none"));
    // One of its plugins requests a newer list of servers at every start: prevent that.
    for (const char *name : {"http_proxy", "https_proxy", "all_proxy"}) {
        environment.insert(QString::fromLatin1(name), QStringLiteral("http://127.0.0.1:9"));
    }
    return environment;
}

} // namespace glimmerpane::bench::obsSettings
