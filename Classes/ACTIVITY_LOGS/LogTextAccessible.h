#pragma once

/// What a screen reader meets of a LogTextView: the whole text, and each link as a child with its own words
/// that can be pressed. The toolkit's own shows the text alone.
namespace LogTextAccessible
{
/// Makes it known to the toolkit; a second call does nothing.
void install();
} // namespace LogTextAccessible
