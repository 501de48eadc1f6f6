#pragma once
// The Orwick Guide's topics: short articles shipped inside the program (Markdown, as Qt
// resources under ":/guide"), in the order the guide lists them. Each topic has a stable id,
// which the "learn." commands and the window's learnArticle() name, and a title, which the
// guide's list and the palette show. The keys an article names are the catalogue's own; a test
// holds them to it.

#include <QList>
#include <QString>

namespace orwick {

struct GuideTopic {
    QString id;       // "gettingAround"
    QString title;    // "Getting Around"
    QString resource; // ":/guide/getting-around.md"
};

namespace guide {

// Every topic, in the guide's order; never empty.
const QList<GuideTopic>& topics();
// The topic with `id`, or null.
const GuideTopic* find(const QString& id);
// The topic's article as Markdown; empty when the resource is missing (a build without it).
QString articleText(const GuideTopic& topic);

} // namespace guide

} // namespace orwick
