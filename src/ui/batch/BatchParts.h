// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

class ApplicationCommands;
class EditorPopovers;
class FilePane;
class InspectorDock;
class PaletteBar;
class QMainWindow;
class RecipeCard;
class StatusLine;

/// The pieces of one batch window, for those who join them. All belong to the window.
struct BatchParts
{
    QMainWindow &window;
    TDocument &document;
    const TDocumentServices &services;
    ApplicationCommands &application;
    PaletteBar &palette;
    RecipeCard &recipe;
    FilePane &files;
    StatusLine &status;
    InspectorDock &inspector;
    EditorPopovers &editors;
};
