// SPDX-License-Identifier: MIT
#include "storage/CaptureFrameJson.h"

#include <QJsonDocument>
#include <QTest>

#include <algorithm>
#include <array>
#include <bit>
#include <random>

using namespace glimmerpane;

class CaptureFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void json_readsBackBitForBit_unlessAFieldIsNotFinite()
    {
        using Bits = std::array<std::uint64_t, 4>; // -0.0 equals 0.0
        std::vector<double> numbers(20000);
        std::mt19937_64 random(20260);
        std::ranges::generate(numbers, [&] { return std::bit_cast<double>(random()); });
        numbers.insert(numbers.end(), {0.0, -0.0, 0.1, 1e21, 5e-324, qInf(), -qInf(), qQNaN()});
        for (const double number : numbers) {
            for (const CaptureFrame frame :
                 std::initializer_list<CaptureFrame>{{number, -2, 3, 4},
                                                     {1.5, number, 3, 4},
                                                     {1, 2, number, 4},
                                                     {1, 2, 3, number}}) {
                const auto json = toJson(frame);
                QCOMPARE(json.has_value(), qIsFinite(number));
                QVERIFY2(!json
                             || std::bit_cast<Bits>(captureFrameFromJson(*json).value())
                                 == std::bit_cast<Bits>(frame),
                         json.value_or(QByteArray()).constData());
            }
        }
    }

    void json_isOneCompactObjectOfNumbers()
    {
        const QByteArray json = toJson({-1.5, 2, 1920, 1080}).value_or(QByteArray());
        QCOMPARE(json.simplified().replace(' ', ""), json);
        QCOMPARE(QJsonDocument::fromJson(json),
                 QJsonDocument::fromJson(R"({"x":-1.5,"y":2,"width":1920,"height":1080})"));
    }

    void reading_takesOnlyWholeRecords()
    {
        const QByteArray rest = R"("y":20,"width":800,"height":600})";
        const QByteArray whole = R"({"x":10,)" + rest;
        const QByteArray nested = QByteArray(100'000, '[') + QByteArray(100'000, ']');
        for (const QByteArray &json : std::initializer_list<QByteArray>{
                 R"({"width":8e+2,"height":6000E-1,"x":1.0e1,"y":20})",
                 R"({"x":10,"name":"a","at":{"x":1},"z":)" + nested + "," + rest,
                 "\n{ \"x\" :\t10 , \"y\":20,\r\n\"width\":800,\"height\":600 } "}) {
            QCOMPARE(captureFrameFromJson(json), (CaptureFrame{10, 20, 800, 600}));
        }
        QCOMPARE(captureFrameFromJson(R"({"x":36893488147419103232,)" + rest).value().x, 0x1p65);
        for (const QByteArray &json : std::initializer_list<QByteArray>{
                 "", whole.chopped(1), whole.chopped(9), whole + '}', whole + '\0', nested,
                 nested.first(99), '{' + rest, '[' + whole + ']', R"({"X":10,)" + rest,
                 "{\"x\":10,\"\xff\xfe\":1," + rest}) {
            QVERIFY2(!captureFrameFromJson(json), json.left(80).constData());
        }
        for (const char *value : {"null", "\"10\"", "true", "[10]", "{\"x\":10}", "NaN", "Infinity",
                                  "1e999", "0x10", "+1", "01", ".5", "1e", ""}) {
            QVERIFY2(!captureFrameFromJson(R"({"x":)" + QByteArray(value) + ',' + rest), value);
        }
    }
};

QTEST_APPLESS_MAIN(CaptureFrameTest)
#include "CaptureFrameTest.moc"
