#pragma once

#include <QtCore/QVector>

#include <functional>

// Actions so far.
struct Counts
{
    qint64 user = 0;
    qint64 writes = 0;
    qint64 host = 0;
};
extern Counts counts;

// From now on a world breaks when Qt warns.
void watchWarnings();

// Runs these steps of a world, calling beforeStep with the number of each, and returns whether the world stayed whole.
// If shown, each step is written to the standard error output.
bool live(quint64 number, const QVector<int>& steps, bool shown, const std::function<void(int)>& beforeStep);
