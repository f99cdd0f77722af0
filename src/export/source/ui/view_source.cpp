// SPDX-License-Identifier: MIT
#include "export/source/ui/view_source.h"

#include "engine/C3dsDisplayWrap.h"
#include "widgets/CUserPrompt.h"
#include "widgets/ui/run_job.h"

const CPreparedScene* SceneOf(CViewer3DSWindowHandler& view) {
    const CBusyCursor cursor;
    const CStillView still(view);
    const CPreparedScene* scene = nullptr;
    RunJob([&](CJobProgress&) { scene = view.GetEngine().Prepared(); });
    return scene;
}
