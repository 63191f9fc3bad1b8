#pragma once

#include <random>
#include <string>
#include <string_view>

/// A text of pieces of PHP, HTML and CSS, with some bytes of no language between them.
inline std::string RandomText(std::mt19937& random)
{
    static constexpr std::string_view Pieces[] = {"<?php ",
                                                  "?>",
                                                  "<?= ",
                                                  "$a",
                                                  " = ",
                                                  ";\n",
                                                  "(",
                                                  ")",
                                                  "{",
                                                  "}",
                                                  "[",
                                                  "]",
                                                  "if ",
                                                  "else ",
                                                  "foreach ",
                                                  " as ",
                                                  "class ",
                                                  "function",
                                                  "fn",
                                                  " => ",
                                                  "->",
                                                  "::",
                                                  "?->",
                                                  "match ",
                                                  "'",
                                                  "\"",
                                                  "\"{$a}\"",
                                                  "<<<X\n",
                                                  "X;\n",
                                                  "// c\n",
                                                  "/*",
                                                  "*/",
                                                  "#[A]",
                                                  "1",
                                                  "0x",
                                                  "1e",
                                                  "return ",
                                                  "new ",
                                                  "static ",
                                                  "abstract ",
                                                  "use ",
                                                  "A\\B",
                                                  "namespace",
                                                  "goto x;",
                                                  "x:",
                                                  "...",
                                                  "&",
                                                  "echo ",
                                                  "\n",
                                                  "\r\n",
                                                  "\r",
                                                  " ",
                                                  "\t",
                                                  "a",
                                                  "Ä",
                                                  "😀",
                                                  "<div>",
                                                  "</div>",
                                                  "<p class=",
                                                  "<td>",
                                                  "</table>",
                                                  "<a href",
                                                  "style=\"",
                                                  ">",
                                                  "<style>",
                                                  "</style>",
                                                  "color: red",
                                                  "a { ",
                                                  "@media ",
                                                  "#fff",
                                                  "1px ",
                                                  "!important",
                                                  "<!--",
                                                  "-->",
                                                  "<script>",
                                                  "</script>",
                                                  "{{ x }}",
                                                  "&amp;",
                                                  "<!DOCTYPE html>",
                                                  "<br/>"};
    std::uniform_int_distribution<std::size_t> piece(0, std::size(Pieces) - 1);
    std::uniform_int_distribution<int> many(0, 60), percent(0, 99), byte(0, 255);
    std::string text = percent(random) < 60 ? "<?php\n" : "";
    for (int i = many(random); i > 0; --i) {
        if (percent(random) < 3)
            text += static_cast<char>(byte(random));
        else
            text += Pieces[piece(random)];
    }
    return text;
}
