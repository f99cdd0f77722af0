// SPDX-License-Identifier: MIT
#pragma once

#include "modeldb/server/CAccess.h"
#include "modeldb/server/CBlobDesk.h"
#include "modeldb/server/CModelSite.h"
#include "modeldb/server/CUploadDesk.h"
#include "modeldb/server/CWorkers.h"
#include "modeldb/server/cache/CHotFolder.h"
#include "modeldb/server/cache/CPageCache.h"
#include "modeldb/server/site/CSite.h"
#include "modeldb/server/work/CPreviewQueue.h"
#include "modeldb/server/work/CViewPages.h"
#include "modeldb/server/work/CWorkshop.h"

/** What a CModelSite consists of. The order matters: each uses those before it. */
struct CModelSite::CState {
    CState(CServerOptions given, std::unique_ptr<CStorePool> pool, std::unique_ptr<CHotFolder> folder);

    const CServerOptions options;
    std::unique_ptr<CStorePool> stores;
    std::unique_ptr<CHotFolder> hot;
    CPageCache pages;
    CAccess access;
    CWorkshop workshop;
    CViewPages views;
    CSite site;
    std::unique_ptr<CPreviewQueue> previews;  ///< null where none are drawn
    std::mutex httpMutex;
    std::function<CHttpCounters()> http;  ///< empty until it is set; under httpMutex
    std::atomic<std::uint64_t> storeFailures{0};
    CWorkers workers;
    CWorkers slowWorkers;  ///< for searches, which may take seconds: they hold up nothing else
    CWorkers viewWorkers;  ///< for the pages in which models turn, which strangers' models make slow
    CBlobDesk blobs;
    CUploadDesk uploads;
};
