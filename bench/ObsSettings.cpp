// SPDX-License-Identifier: MIT
#include "bench/ObsSettings.h"

namespace glimmerpane::bench::obsSettings
{

namespace
{

QString globalSettings()
{
    return u"[General]\nFirstRun=true\nEnableAutoUpdates=false\n"
           "[Basic]\nProfile=Bench\nProfileDir=Bench\nSceneCollection=Bench\n"
           "SceneCollectionFile=Bench\n"
           "[BasicWindow]\nPreviewEnabled=false\nSaveProjectors=true\n"_s;
}

QString profile(QSize size)
{
    return u"[General]\nName=Bench\n[Video]\nBaseCX=%1\nBaseCY=%2\nOutputCX=%1\n"
           "OutputCY=%2\nFPSType=0\nFPSCommon=60\n"_s.arg(size.width())
               .arg(size.height());
}

/** A projector's monitor of -1 is a window, its type 1 a scene; an alignment of 5 is top left. */
QString sceneCollection(QSize screen, const QRect &area)
{
    return uR"({"name": "Bench", "current_scene": "Scene", "current_program_scene": "Scene",
    "scene_order": [{"name": "Scene"}],
    "saved_projectors": [{"monitor": -1, "type": 1, "name": "Scene"}],
    "sources": [
        {"id": "xshm_input", "name": "Screen", "settings": {"show_cursor": true,
            "cut_left": %1, "cut_top": %2, "cut_right": %3, "cut_bot": %4}},
        {"id": "scene", "name": "Scene", "settings": {"id_counter": 1, "items": [
            {"name": "Screen", "id": 1, "visible": true, "align": 5,
                "pos": {"x": 0.0, "y": 0.0}, "scale": {"x": 1.0, "y": 1.0}}]}}
    ]}
)"_s.arg(area.left())
        .arg(area.top())
        .arg(screen.width() - area.right() - 1)
        .arg(screen.height() - area.bottom() - 1);
}

} // namespace

QProcessEnvironment write(const MeasuredDesktop &desktop, const QRect &area)
{
    auto environment = desktop.environment;
    const QDir folder(environment.value(u"XDG_CONFIG_HOME"_s) + u"/obs-studio"_s);
    const std::pair<QString, QString> files[]
        = {{u"global.ini"_s, globalSettings()},
           {u"basic/profiles/Bench/basic.ini"_s, profile(area.size())},
           {u"basic/scenes/Bench.json"_s, sceneCollection(desktop.client.rootSize(), area)}};
    for (const auto &[name, content] : files) {
        const QString path = folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        writeText(path, content);
    }
    environment.insert(u"HOME"_s, environment.value(u"XDG_RUNTIME_DIR"_s));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"LIBGL_ALWAYS_SOFTWARE"_s, u"1"_s);
    environment.insert(u"PULSE_SERVER"_s, u"none"_s);
    // One of its plugins asks for a newer list of servers at every start: let it ask nobody.
    for (const char *name : {"http_proxy", "https_proxy", "all_proxy"}) {
        environment.insert(QString::fromLatin1(name), u"http://127.0.0.1:9"_s);
    }
    return environment;
}

} // namespace glimmerpane::bench::obsSettings
