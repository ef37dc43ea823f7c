// zel/core/bridgestate.h: what the bridge's two threads share, for the files that make up the bridge.
//
// Only gluemanager.cpp (the queue and its drain) and gluewaits.cpp (the waits and the answers)
// include this; everyone else goes through GlueManager.
#pragma once

#include "zel/core/gluemanager.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace glue {

// One queued call: a batch of text for a unit, or a signal to emit.
struct Command
{
    long unit = 0;
    QByteArray text;
    bool plainText = false; // no backspace or bell: may take further text behind it
    std::function<void(GlueManager&)> emitter;
    const void* batchKind = nullptr;
    std::unique_ptr<GlueBatch> batch;

    bool isText() const { return !emitter && !batch; }
};

// Everything the two threads share, under one lock. It outlives any GlueManager, so that a caller
// that saw the bridge a moment ago still finds valid state to learn that it has gone.
struct Bridge
{
    std::mutex mutex;
    std::condition_variable answered;
    std::condition_variable room;
    bool gone = true;
    GlueManager* manager = nullptr;
    std::deque<Command> queue;
    std::size_t queuedBytes = 0;
    bool drainPosted = false;

    bool readPending = false;
    bool readCancelled = false;
    long readUnit = 0;
    bool fileNamePending = false;
    bool dialogPending = false;
    bool alertPending = false;
    bool syncPending = false;
    bool queryPending = false;
    bool spreadsheetPending = false;
    QString readText;
    QString fileNameResult;
    QStringList dialogResult;
    bool queryResult = false;

    // Forgets every queued call; called with the lock held.
    void dropQueue()
    {
        queue.clear();
        queuedBytes = 0;
        drainPosted = false;
    }

    bool& flag(GlueManager::Flag f)
    {
        switch (f) {
        case GlueManager::Flag::read:
            return readPending;
        case GlueManager::Flag::fileName:
            return fileNamePending;
        case GlueManager::Flag::dialog:
            return dialogPending;
        case GlueManager::Flag::alert:
            return alertPending;
        case GlueManager::Flag::sync:
            return syncPending;
        case GlueManager::Flag::query:
            return queryPending;
        case GlueManager::Flag::spreadsheet:
            return spreadsheetPending;
        }
        return syncPending;
    }
};

// The one bridge state of the process.
Bridge& bridge();

} // namespace glue
