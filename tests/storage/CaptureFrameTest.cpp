// SPDX-License-Identifier: MIT
#include "storage/CaptureFrame.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <random>

using namespace glimmerpane;

namespace
{

using Limits = std::numeric_limits<double>;
using Frame = std::optional<CaptureFrame>;

constexpr std::array members{&CaptureFrame::x, &CaptureFrame::y, &CaptureFrame::width,
                             &CaptureFrame::height};

std::uint64_t bits(double number)
{
    return std::bit_cast<std::uint64_t>(number);
}

bool readsBackBitForBit(const CaptureFrame &frame)
{
    const auto json = toJson(frame);
    const auto read = json ? captureFrameFromJson(*json) : std::nullopt;
    return read && std::ranges::all_of(members, [&](auto member) {
               return bits(frame.*member) == bits((*read).*member);
           });
}

} // namespace

class CaptureFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void json_readsBackBitForBit_data();
    void json_readsBackBitForBit();
    void json_readsBackBitForBit_forAnyFiniteNumbers();
    void json_isOneCompactObjectOfNumbers();
    void json_isRefused_whenAFieldIsNotFinite();
    void reading_takesOnlyWholeRecords_data();
    void reading_takesOnlyWholeRecords();
    void equality_followsFloatingPoint();
};

void CaptureFrameTest::json_readsBackBitForBit_data()
{
    QTest::addColumn<double>("number");
    for (const double number :
         {0.0, 0.1, 0.5, 1.0 / 3, 1920.0, 1e21, 123456789012345678.0, 9007199254740993.0, 1e-7,
          Limits::max(), Limits::min(), Limits::denorm_min(), Limits::epsilon(),
          std::nextafter(Limits::min(), 0.0), std::nextafter(1.0, 2.0)}) {
        QTest::addRow("%.17g", number) << number;
    }
}

void CaptureFrameTest::json_readsBackBitForBit()
{
    QFETCH(double, number);
    QVERIFY(readsBackBitForBit({number, -number, -5.25, number}));
    QVERIFY(readsBackBitForBit({-5.25, number, number, -number}));
}

void CaptureFrameTest::json_readsBackBitForBit_forAnyFiniteNumbers()
{
    std::mt19937_64 random(20260);
    const auto number = [&random] {
        double value = Limits::quiet_NaN();
        while (!std::isfinite(value)) {
            value = std::bit_cast<double>(random());
        }
        return value;
    };
    for (int i = 0; i < 20000; ++i) {
        const CaptureFrame frame{number(), number(), number(), number()};
        QVERIFY2(readsBackBitForBit(frame), toJson(frame).value_or(QByteArray()).constData());
    }
}

void CaptureFrameTest::json_isOneCompactObjectOfNumbers()
{
    const QByteArray json = toJson({-1.5, 2, 1920, 1080}).value_or(QByteArray());
    QCOMPARE(json.simplified().replace(' ', ""), json);
    const QJsonObject expected{{QStringLiteral("x"), -1.5},
                               {QStringLiteral("y"), 2},
                               {QStringLiteral("width"), 1920},
                               {QStringLiteral("height"), 1080}};
    QCOMPARE(QJsonDocument::fromJson(json).object(), expected);
}

void CaptureFrameTest::json_isRefused_whenAFieldIsNotFinite()
{
    for (const double number : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        for (const auto member : members) {
            CaptureFrame frame{1, 2, 3, 4};
            frame.*member = number;
            QVERIFY(!toJson(frame));
        }
    }
}

void CaptureFrameTest::reading_takesOnlyWholeRecords_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<Frame>("expected");
    const auto row = [](const char *name, const QByteArray &json, Frame expected = std::nullopt) {
        QTest::newRow(name) << json << expected;
    };
    const QByteArray rest = R"("y":20,"width":800,"height":600})";
    const QByteArray brackets(100'000, '[');
    const QByteArray closed = brackets + QByteArray(brackets.size(), ']');
    const CaptureFrame frame{10, 20, 800, 600};

    row("other order", R"({"width":800,"height":600,"x":10,"y":20})", frame);
    row("extra members", R"({"x":10,"name":"a","at":{"x":1},)" + rest, frame);
    row("white space", "\n{ \"x\" :\t10 , \"y\":20,\r\n\"width\":800,\"height\":600 } ", frame);
    row("number forms", R"({"x":-1.25e1,"y":2E+1,"width":8000e-1,"height":600.0})",
        CaptureFrame{-12.5, 20, 800, 600});
    row("beyond 64-bit integers", R"({"x":36893488147419103232,)" + rest,
        CaptureFrame{0x1p65, 20, 800, 600});
    row("extra member, deeply nested", R"({"x":10,"z":)" + closed + "," + rest, frame);

    row("nothing", "");
    row("not JSON", "x=10 y=20");
    row("truncated", R"({"x":10,"y":20,"width":800,"hei)");
    row("no closing brace", R"({"x":10,"y":20,"width":800,"height":600)");
    row("something after it", R"({"x":10,)" + rest + "}");
    row("NUL after it", R"({"x":10,)" + rest + QByteArray(1, '\0'));
    row("array", "[10,20,800,600]");
    row("array around it", R"([{"x":10,)" + rest + "]");
    row("number", "10");
    row("null", "null");
    row("deep nesting", closed);
    row("deep nesting, truncated", brackets);
    row("invalid UTF-8", "{\"x\":10,\"\xff\xfe\":1," + rest);

    row("member missing", R"({"x":10,"y":20,"width":800})");
    row("other case", R"({"X":10,)" + rest);
    for (const char *value : {"null", "\"10\"", "true", "[10]", "{\"x\":10}", "NaN", "Infinity",
                              "1e999", "0x10", "+1", "01", ".5", "1e", ""}) {
        row(qPrintable(QStringLiteral("x is <%1>").arg(QLatin1StringView(value))),
            R"({"x":)" + QByteArray(value) + "," + rest);
    }
}

void CaptureFrameTest::reading_takesOnlyWholeRecords()
{
    QFETCH(QByteArray, json);
    QFETCH(Frame, expected);
    QCOMPARE(captureFrameFromJson(json), expected);
}

void CaptureFrameTest::equality_followsFloatingPoint()
{
    for (const auto member : members) {
        CaptureFrame frame{0, 0, 0, 0};
        frame.*member = -0.0;
        QVERIFY(frame == CaptureFrame{});
        frame.*member = 1;
        QVERIFY(frame != CaptureFrame{});
        frame.*member = Limits::quiet_NaN();
        QVERIFY(frame != CaptureFrame(frame));
    }
}

QTEST_APPLESS_MAIN(CaptureFrameTest)
#include "CaptureFrameTest.moc"
