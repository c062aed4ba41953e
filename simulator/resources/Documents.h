#pragma once

#include <QString>

#include <vector>

namespace simulator
{

struct Route;
struct State;

struct Document
{
    QString installation = {};
    QString kind = {}; // "ifu", "uitranslation" or "about"; of a help file: its language code
    QString fileId = {};
    QString fileName = {};
    int fileSize = 0;
    QString language = {}; // for display; only help files have one
};

struct Release
{
    QString installation = {};
    QString version = {};
    bool isForced = false;
};

struct Documents
{
    std::vector<Document> documents = {};
    std::vector<Release> releases = {};
};

/// The published software release and documents: instructions for use, user interface translation, about document and
/// help files. Nothing of it changes by itself.
std::vector<Route> documentRoutes();
/// The second installation gets no help files.
void seedDocuments(State& state);

} // namespace simulator
