// The five entities of the documents: &amp; &lt; &gt; &quot; &apos;. No others are known.
#pragma once

#include <string>
#include <string_view>

namespace tolvanix {

// Appends the text with the five characters as entities; a "&" that begins one of the entities
// stays as it is.
void appendEscaped(std::u16string& out, std::u16string_view text);

// The text with the entities as characters. Text that was escaped more than once collapses:
// &amp;lt; gives <.
std::u16string unescaped(std::u16string text);

}  // namespace tolvanix
