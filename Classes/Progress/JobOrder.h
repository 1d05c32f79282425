#pragma once

/// What a press in the window or the menu asks of the running job.
enum class JobOrder { Pause, Resume };
