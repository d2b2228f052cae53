#pragma once

#include "capture/LumaphoneLiveAudioPipeline.h"
#include "capture/SystemAudioPipelineEvent.h"
#include "cli/CaptionPrinter.h"
