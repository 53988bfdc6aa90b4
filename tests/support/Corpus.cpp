#include "support/Corpus.h"

#include <cstddef>
#include <string_view>

#include "support/TextBlock.h"

namespace {

using std::string_literals::operator""s;
using enum CorpusOutcome;

/// Texts that go on one line: see textsOf().
struct Block {
    CorpusOutcome outcome;
    std::string_view texts;
};

constexpr Block blocks[] = {
    // Logic and comparisons.
    {condition, R"corpus(
true ;; not not false ;; true and false or true ;; true implies false implies true ;; (((true)))
not (true or false) and true ;; true or 1 / 0 = 1 ;; 1 / 0 = 1 or true ;; (true)and(not(false))
true = (1 = 1) ;; true <> false ;; 1 = 1 ;; 1<>2 ;; 1 < 2 ;; 2 > 1 ;; 0.5 <= 0.5 ;; 1.5 >= 0.5
$name <> "" ;; $name < "n" ;; $name > $type ;; $v <= $w ;; this = current ;; this <> model
[a] = [b] ;; [a] <> [a] ;; [a] < [b] ;; [a] <= [a] ;; [a] > [b] ;; [a] >= [b]
$name ~= "^[a-z]+$" ;; $name ~<> "o" ;; $name ~= $w ;; "x" ~= "(" ;; integer $v > 3
real $v < 0.5 ;; boolean $w ;; boolean "true" ;; boolean 0 ;; boolean 0.5 ;; -1 < - -1
2147483647 + 1 > 0 ;; -2147483647 - 2 < 0 ;; 1.0 / 0.0 > 1.0 ;; 1 + 2 * 3 - 4 / 2 = 5 ;; 007 = 7
)corpus"},
    // Quantifiers, lets, conditionals, functions.
    {condition, R"corpus(
for_all x in [a] => $name of x <> "" ;; there_exists x in all "Node" => x = this
for_all x in [a] => there_exists y in x -> [b] => x <> y and current = y
for_all x in [a] => there_exists x in x -> [a] => x = this
for_all x in (filter {true} over [a]) => boolean ($w of x)
there_exists x in [a] => size (filter {x = current} over [b]) > 1
for_all x in [a] => for_all y in [b] => for_all z in [c] => x <> y implies y <> z
(there_exists x in [a] => x = this) or (there_exists x in [b] => x = model)
let x = true in x and x ;; let x = [a] in size x = size x ;; let x = this in x = x
let x = 1 in let x = x + 1 in x = 2 ;; if true then if false then true else false else true
match (`^r`, $name) ;; match (``, $w) ;; match (`ä|\w`, $w) ;; first [a] = only [b]
there_exists x in unique [a] => class x = "Leaf" ;; object [c] = this
(this -> l:[a] -> @l) >= [a] ;; (this -> l:^[a]{current <> this} -> @l) <> [b]
[a]{[b]{[c] = [a]} = [b]} = [a] ;; size (l:[a]{size (this -> [b] -> @l) = 0}) = 0
)corpus"},
    // Constants and attributes.
    {attribute, R"corpus(
0 ;; 2147483647 ;; 3.14159265358979 ;; 000.100 ;; 179769313486231570000000000.0 ;; ""
"a\"b\\c\nd\re\tf" ;; "ä€😀" ;; "(* no comment *)" ;; $name ;; $_ ;; $unknownAttribute
$name of this ;; $name of model ;; $ (**) name ;; $name of [a] ;; $name of first [a]
attribute ($name, [a]) ;; attribute ("na" + "me", model)
)corpus"},
    // Arithmetic and functions.
    {attribute, R"corpus(
1 - 2 - 3 ;; 2 * 3 / 4 ;; 1 / 0 ;; - - -1 ;; 0.5 + 0.25 * -1.0 ;; 0.0 / 0.0 ;; "a" + "b" + $name
integer $v * 2 ;; real $v / 3.0 ;; 2147483647 * 2 ;; (-2147483647 - 1) / -1 ;; size [a] + size [b]
class this ;; class first [c] ;; uid this ;; uid model ;; escape "\t\n\"\\" ;; escape $w
tolower $name ;; toupper $w ;; trim " \t x " ;; string 1 ;; string 0.1 ;; string true
string $name ;; integer 2.9 ;; integer true ;; integer (-2.9) ;; real 1 ;; real false
find (`[0-9]+`, $w) ;; find (`x*`, $name) ;; replace (`o`, $name, "0") ;; replace (`[(]`, "(", $w)
replace_all (`(.)(.)`, $name, "\\2\\1") ;; replace_all (``, $name, "-")
alternation ($name, "none") ;; $name |=> "none" ;; ($name |=> $type) |=> $w
opSig this ;; opSig first [c] ;; comma map {opSig current} over [a]
comma map {$name} over [a] ;; delim ("; ", map {$name} over [a]) 
concat map {uid current} over [b] ;; delim ($v, map {class current} over [a] -> [b])
comma map {string (size [a])} over all "Node"
comma map {$name + ":" + comma map {$name} over [b]} over [a] ;; size all $name
size (traverse {[a]} over [a]) ;; size unique [a] ;; size (reverse (unique_stable [a]))
size (traverse {traverse {traverse {[a]} over [a]} over [a]} over [a])
)corpus"},
    // Lets and conditionals.
    {attribute, R"corpus(
let x = $name in x + x ;; let x = 1 / 0 in 1 ;; let x = model in $name of x
let x = $v in if x = "" then 0 else integer x ;; let x = map {$name} over [a] in comma x + concat x
let x = first [a] in let y = first (x -> [b]) in ($name of y |=> uid y)
let size = [a] in size size ;; comma (let x = $name in map {x + $name} over [a])
uid (let x = [a] in first x) ;; if true then 1 else 1 / 0 ;; let for_All = 1 in for_All
if $type = "" then $name |=> $w else $type |=> $v ;; let name = $name in name
comma (if true then map {$name} over [a] else map {$name} over [b])
$name of (if $v = "7" then this else model) ;; let a = 1 in size [a] + a
)corpus"},
    // Paths and labels.
    {association, R"corpus(
[a] ;; current -> [b] ;; model -> [a] ;; [a] -> [b] -> [c] ;; [] ;; [a\]b\\c\t] ;; [ä b]
^[a] -> [b] ;; _[a] -> [b] ;; ^_[a] -> ^_[b] ;; [a]{true} ;; [a]{1 / 0 = 1}
[a]{$name = "one"} -> [b]{current <> this} ;; [a]{for_all x in [b] => x <> current}
this -> ([a]; [b]; [c]) ;; this -> ([a]; [b]) -> [c] ;; this -> ([a] -> [b]; [c]) -> ([a]; [b])
this -> (([a]; [b]); ([c])) ;; this->([a];^[b]->_[c]{true}) ;; l:[a] ;; l:[a] -> @l
l:^[a] -> @l ;; l:^_[a] -> @l ;; [a] -> l:^[b] -> [a] -> @l ;; this -> ([a] -> @l; l:^[b])
this -> (@l; l:^[a]) ;; this -> ([a] -> @l; l:^[b] -> @m; m:^[c] -> @l) ;; l:^[a] -> (@l; [b])
this -> (l:^[a]; m:^[b]) -> (@l; @m) ;; l:^[a]{$name <> ""} -> @l ;; l:[a]{[b] -> @l = [c]}
l:[a]{size (l:[b] -> @l) > 0} -> @l ;; l:[a] -> @l -> [b] ;; this -> ([a]; l:[b]) -> [c] -> @l
if (l:[a] -> @l) = [a] then l:[b] -> @l else [c] ;; this -> l : ^ _ [a] { true } -> @ l
)corpus"},
    // Collections.
    {association, R"corpus(
all "Node" ;; all class this ;; all ("No" + "de") ;; unique [a] ;; unique_stable [a] ;; reverse [a]
filter {$name ~= "e"} over all "Node" ;; filter {1 / 0 = 1} over [a]
filter {size [b] > 0} over filter {current <> this} over [a] ;; traverse {[b]} over [a]
traverse {l:^[a] -> @l} over [a] ;; traverse {this -> [a]} over model -> [a]
sort {$name} over [a] ;; sort {$type} & sortd {$name} over all "Node" ;; sort {real $v} over [a]
sort {for_all x in [b] => $name of x = $name} & sort {uid current} over [a]
sort {size (sort {$name} over [b])} over [a] ;; sortd{0.0 / 0.0}over[a] ;; sort {1} over [a]
sort {let x = $name in x + x} & sort {if true then 1 else 2} over unique [a]
let x = [a] in x ;; let x = first [a] in x -> [b] ;; let x = $name in this -> [a]{$name = x}
let x = [a] in if size x = 0 then [b] else x ;; let x = all "Node" in filter {x >= [a]} over x
let x = this in let y = x in y -> [a] ;; let x = 1 in [a]
)corpus"},
    {otherType, R"corpus(
this ;; model ;; first [a] ;; only (unique [a]) ;; `a+` ;; () ;; (1, ("x", 0.5), ())
map {$name} over [a] ;; let x = this in x ;; let x = map {$name} over [a] in x
if true then this else model ;; if true then map {$name} over [a] else map {""} over [b]
)corpus"},
    // Wrong names and operands.
    {typeError, R"corpus(
x ;; x -> [a] ;; count [a] ;; count x ;; Size [a] ;; let x = x in 1 ;; (let x = 1 in x) + x
@l ;; l:[a] -> @m ;; this -> (l:[a]; l:[b]) ;; l:[a] = (this -> @l) ;; for_all x in x => true
1 + true ;; 1 + not true ;; 1 + 0.5 ;; "a" - "b" ;; "a" * "b" / "c" ;; -true ;; not 1 ;; 1 and true
true or "" ;; 1 implies 2 ;; this + this ;; 1 + (2, 3) ;; -() ;; 1 + x + true
1 = "1" ;; 1 = 0.5 ;; true < false ;; this < this ;; [a] = this ;; () = () ;; $name ~= `a` ;; 1 ~= 2
(1, 2) = (1, 2) ;; (map {$name} over [a]) = (map {$name} over [b])
)corpus"},
    // Wrong arguments and constructs.
    {typeError, R"corpus(
size this ;; size ([a], [b]) ;; size () ;; attribute (this, "name") ;; match ("a", "b") ;; match `a`
replace (`a`, "b") ;; comma [a] ;; opSig [a] ;; string this ;; first this ;; 1 |=> "x" ;; all this
for_all x in this => true ;; there_exists x in [a] => 1 ;; map {1} over [a] ;; map {$name} over this
filter {$name} over [a] ;; filter {true} over "x" ;; traverse {this} over [a]
traverse {[a]} over 1 ;; sort {this} over [a] ;; sort {[a]} & sort {()} over this ;; [a]{$name}
[a]{x = 1} -> [b]{2} ;; let x = 1 in x -> [a] ;; let x = `a` in x ;; let x = 1 in ()
let x = (1, 2) in x ;; if 1 then 2 else 3 ;; if true then 1 else "" ;; if true then () else ()
if 1 then "" else x ;; match (`(`, "") ;; find (`[`, $name)
match (`a**`, $name) = match (`*`, $name)
)corpus"},
    {syntaxError, R"corpus(
(* nothing *) ;; 1 + ;; 1 2 ;; (1 ;; 1) ;; (1,) ;; (,1) ;; 1,2 ;; and ;; not ;; $ ;; $1 ;; $name of
name of this ;; $$name ;; [a] [b] ;; this -> ;; -> [a] ;; this -> this ;; this -> ()
this -> ([a];) ;; ([a]; [b]) ;; l: ;; l:x ;; @ ;; l:[a] @l ;; _^[a] ;; [a]{} ;; [a]{true
[a]{true} {true} ;; 1 = 2 = 3 ;; x |=> y |=> z ;; 1 == 2 ;; 1 => 2
a : b ;; true or not ;; 1 + let x = 1 in x ;; 1 = if true then 1 else 2 ;; for_all
for_all x in [a] true ;; for_all 1 in [a] => true
let x 1 in x ;; let x = 1 ;; let this = 1 in this ;; if true then 1 ;; if true else 1
map $name over [a] ;; map {$name} [a] ;; map {} over [a] ;; filter {true} over ;; sort over [a]
sort {1} & over [a] ;; sort {1} & filter {true} over [a] ;; string ;; integer + 1 ;; 1.5.5 ;; ä = 1
)corpus"},
    // Comments, texts and names without an end; numbers past their limits.
    {exception, R"corpus(
(* never closed ;; 1 (* (* *) (* ;; true *) ;; "open ;; [open ;; `open ;; " ;; true and [a
1 = 2 or "\ ;; size [a\ ;; 2147483648 ;; -99999999999999999999 ;; $v = "" or 4294967296 = 1
)corpus"},
};

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

// `open` and `close` round `inner`, many times over.
std::string nested(const std::string& open, const std::string& inner, const std::string& close,
                   std::size_t count = 100) {
    return repeated(open, count) + inner + repeated(close, count);
}

/// White space, control characters, NUL, bytes that are no UTF-8, line ends where they may not be.
std::vector<CorpusText> oddTexts() {
    return {
        {" \t\r\n true \t\r\n ", condition},
        {"true(* comment *)(***)(* * \n (* \t*)", condition},
        {"1\r\n<\r\n2", condition},
        {"\ttrue\tand\ttrue", condition},
        {"true\0 and nonsense ((("s, condition},
        {"true \x01 or true \xff\x7f", condition},
        {"# true % ' ? . \\ ]", condition},
        {"1 != 1", condition},
        {"\"\x80\xff\t\"", attribute},
        {" $ name \n", attribute},
        {"$name\r\n", attribute},
        {"", syntaxError},
        {" \t\r\n ", syntaxError},
        {"\0true"s, syntaxError},
        {"\"a\nb\"", exception},
        {"[a\rb]", exception},
        {"`a\r\nb`", exception},
        {"\"\0\""s, exception},
    };
}

/// Long and deep texts.
std::vector<CorpusText> largeTexts() {
    const std::string name(2000, 'x');
    return {
        {"true" + repeated(" or false", 2000), condition},
        {"true" + repeated(" and (true implies true)", 200), condition},
        {"let " + name + " = true in " + name, condition},
        {nested("(", "true", ")"), condition},
        {nested("not ", "true", ""), condition},
        {nested("true implies ", "false", ""), condition},
        {nested("for_all x in [a] => ", "true", "", 30), condition},
        {nested("size ([a]{", "true", "}) = 0", 20), condition},
        {"$" + name + " + \"" + name + "\"", attribute},
        {"\"\"" + repeated(" + $name", 500), attribute},
        {nested("- ", "1", ""), attribute},
        {nested("string (", "1", ")"), attribute},
        {nested("let x = $name in x + (", "x", ")", 50), attribute},
        {nested("let x = (", "1", ") in x", 50), attribute},
        {nested("if true then ", "1", " else 2", 60), attribute},
        {nested("(\"x\" |=> ", "$name", ")", 50), attribute},
        {nested("size filter {", "1", " = 1} over [a]", 20), attribute},
        {"[" + name + "]" + repeated(" -> [b]", 300), association},
        {"this" + repeated(" -> ([a]; [b])", 100), association},
        {"l:^[a]" + repeated(" -> ([a]; [b])", 50) + " -> @l", association},
        {"this -> ([a]" + repeated("; [b]", 200) + ")", association},
        {"this -> " + nested("(", "[a]; [b]", ")"), association},
        {nested("unique (", "[a]", ")"), association},
        {nested("filter {true} over ", "[a]", ""), association},
        {nested("traverse {", "[a]", "} over [a]", 15), association},
        {"not 1"s.append(repeated(" or not 1", 150)), typeError},
        {"("s.append(repeated("-true, ", 5)).append("1)"), typeError},
        {nested("(", "1", ""), syntaxError},
        {nested("", "1", ")"), syntaxError},
        {std::string(400, '1') + ".0", exception},
        {nested("(", "1", ")", 2000), exception},
        {nested("let x = 1 in ", "x", "", 2000), exception},
        {nested("true implies ", "true", "", 2000), exception},
        {"[a]" + repeated(" -> [a]", 2000), exception},
    };
}

}  // namespace

const std::vector<CorpusText>& corpus() {
    static const std::vector<CorpusText> texts = [] {
        std::vector<CorpusText> all = oddTexts();
        for (const Block& block : blocks) {
            for (const std::string& text : textsOf(block.texts)) {
                all.push_back(CorpusText{text, block.outcome});
            }
        }
        for (const CorpusText& text : largeTexts()) {
            all.push_back(text);
        }
        return all;
    }();
    return texts;
}
