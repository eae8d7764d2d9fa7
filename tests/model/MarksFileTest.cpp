// SPDX-License-Identifier: MIT
#include "model/MarksFile.h"

#include "platform/base/Error.h"

namespace {

QImage noImage(const QString& path) { throw Error(Error::fileDomain, 1, u"No existe «%1»."_s.arg(path)); }

QByteArray one(const QByteArray& fields) { return "{\"annotations\": [{" + fields + "}]}"; }

const QByteArray box
    = R"("kind": "rectangle", "start": [0, 0], "end": [9, 9], "color": "#FF0000", "lineWidth": 1)";

} // namespace

TEST(MarksFile, EveryFieldReachesItsMarkAndMissingOnesHaveTheirDefaults)
{
    const auto file = MarksFile::parse(R"({"$schema": "x", "pixelScale": 2, "annotations": [
        {"kind": "arrow", "id": "00112233-4455-6677-8899-aabbccddeeff", "start": [1, 2], "end": [3, 4.5],
         "color": "#3A86FF", "lineWidth": 5, "control": [6, 7], "arrowStyle": "sketch"},
        {"kind": "text", "start": [8, 9], "color": "#FF0000", "text": "Ñu", "fontSize": 30, "filled": true,
         "handwritten": true, "pointer": [10, 11], "boxWidth": 120},
        {"kind": "step", "start": [1, 1], "color": "#FF0000", "lineWidth": 2, "number": -3},
        {"kind": "pen", "points": [[1, 1], [2, 2]], "color": "#FF0000", "lineWidth": 2},
        {"kind": "blur", "start": [0, 0], "end": [5, 5], "blurStyle": "blur"},
        {"kind": "image", "start": [0, 0], "end": [5, 5], "image": "a.png"}],
        "beautify": {"enabled": true, "gradient": -1, "padding": 10, "cornerRadius": 3, "shadow": false, "border": false}})",
        [](const QString& path) { return QImage(int(path.size()), 1, QImage::Format_RGB32); });
    EXPECT_EQ(file.pixelScale, 2);
    const BeautifySettings frame{
        .enabled = true, .gradient = -1, .padding = 10, .cornerRadius = 3, .shadow = false, .border = false};
    EXPECT_EQ(file.beautify, frame);
    QList<Annotation> wanted{{.kind = AnnotationKind::arrow,
                                 .start = {1, 2},
                                 .end = {3, 4.5},
                                 .color = QColor(0x3A, 0x86, 0xFF),
                                 .lineWidth = 5,
                                 .arrowStyle = ArrowStyle::sketch,
                                 .control = QPointF(6, 7)},
        {.kind = AnnotationKind::text,
            .start = {8, 9},
            .end = {8, 9},
            .color = Qt::red,
            .filled = true,
            .text = u"Ñu"_s,
            .fontSize = 30,
            .handwritten = true,
            .pointer = QPointF(10, 11),
            .boxWidth = 120},
        {.kind = AnnotationKind::step,
            .start = {1, 1},
            .end = {1, 1},
            .color = Qt::red,
            .lineWidth = 2,
            .number = -3},
        {.kind = AnnotationKind::pen, .points = {{1, 1}, {2, 2}}, .color = Qt::red, .lineWidth = 2},
        {.kind = AnnotationKind::blur, .end = {5, 5}, .blurStyle = BlurStyle::blur},
        {.kind = AnnotationKind::image, .end = {5, 5}, .image = file.annotations.value(5).image}};
    EXPECT_EQ(file.annotations.value(0).id, QUuid(u"00112233-4455-6677-8899-aabbccddeeff"_s));
    EXPECT_EQ(file.annotations.value(5).image.width(), 5);
    ASSERT_EQ(file.annotations.size(), wanted.size());
    for (qsizetype i = 0; i < wanted.size(); ++i) {
        wanted[i].id = file.annotations[i].id;
        EXPECT_EQ(file.annotations[i], wanted[i]) << i;
    }
    EXPECT_FALSE(MarksFile::parse("{}", noImage).pixelScale);
    EXPECT_EQ(MarksFile::parse("{}", noImage).beautify, BeautifySettings());
}

TEST(MarksFile, WhatIsWrongIsNamedByItsPlace)
{
    const struct {
        QByteArray marks;
        QString place;
    } rows[]{
        {"", u"no es JSON válido (línea 1)"_s},
        {"{\"annotations\":\n [", u"no es JSON válido (línea 2)"_s},
        {QByteArray(200000, '['), u"no es JSON"_s},
        {"[]", u"$: "_s},
        {"{\"anotations\": []}", u"$.anotations: campo desconocido"_s},
        {"{\"pixelScale\": \"2\"}", u"$.pixelScale: debe ser un número"_s},
        {"{\"pixelScale\": 0}", u"$.pixelScale"_s},
        {"{\"annotations\": {}}", u"$.annotations: debe ser una lista"_s},
        {"{\"annotations\": [7]}", u"$.annotations[0]: debe ser un objeto"_s},
        {"{\"beautify\": {\"padding\": -1}}", u"$.beautify.padding"_s},
        {"{\"beautify\": {}, \"\\u0062eautify\": {}}", u"$.beautify: aparece dos veces"_s},
        {one("\"kind\": \"star\""), u"$.annotations[0].kind: valor desconocido"_s},
        {one(R"("kind": "pen", "color": "#FF0000", "lineWidth": 2)"), u"$.annotations[0]: falta «points»"_s},
        {one(box + ", \"colour\": 1"), u"$.annotations[0].colour: campo desconocido"_s},
        {one(box + ", \"color\": \"#00FF00\""), u"$.annotations[0].color: aparece dos veces"_s},
        {one(QByteArray(box).replace("#FF0000", "red")), u"$.annotations[0].color: debe ser un color"_s},
        {one(box + ", \"control\": [1]"), u"$.annotations[0].control: debe ser un punto"_s},
        {one(box + ", \"control\": [1, true]"), u"$.annotations[0].control[1]: debe ser un número"_s},
        {one(box + ", \"control\": [1, 1e7]"), u"$.annotations[0].control[1]"_s},
        {one(box + ", \"fontSize\": 1e999"), u""_s},
        {one(box + ", \"fontSize\": 0"), u"$.annotations[0].fontSize"_s},
        {one(box + ", \"number\": 1.5"), u"$.annotations[0].number: debe ser un número entero"_s},
        {one(box + ", \"filled\": 1"), u"$.annotations[0].filled: debe ser true o false"_s},
        {one(box + ", \"id\": \"yo\""), u"$.annotations[0].id: debe ser un UUID"_s},
        {one(box + ", \"image\": \"no.png\""), u"$.annotations[0].image: No existe «no.png»."_s},
    };
    for (const auto& [marks, place] : rows) {
        QString said;
        try {
            MarksFile::parse(marks, noImage);
            ADD_FAILURE() << "accepted: " << marks.left(80).constData();
        } catch (const Error& error) {
            said = error.localizedDescription;
        }
        EXPECT_TRUE(said.contains(place)) << marks.left(80).constData() << "\n  said: " << said.toStdString();
    }
}
