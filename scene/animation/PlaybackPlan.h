#pragma once

namespace velmoran::scene
{
class PlaybackPlan
{
};
} // namespace velmoran::scene
