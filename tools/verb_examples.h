// tools/verb_examples.h - calls that show what each verb is for.
//
// Help and manual show the rows; a test runs all of them, beside the files that tests/delivery/examples_test.py makes,
// and asks for at least one of each verb.
#pragma once

namespace murv::tool
{

struct tVerbExample
{
    const char* m_pVerb;  // "gen samples" for a verb of a verb
    const char* m_pCall;
    const char* m_pMeaning;
};

inline constexpr tVerbExample s_ctVerbExamples[] = {
    {"fmt", "murv fmt config.murv", "print the document with a new layout"},
    {"fmt", "murv fmt --check *.murv", "name the files that have another layout"},
    {"fmt", "murv fmt --in-place --indent tab config.murv", "replace the file; a tab for each level"},
    {"check", "murv check config.murv", "accept the document, or show its errors at their places"},
    {"check", "murv check -l ach payments", "the same for a file of payments, by an installed layout"},
    {"get", "murv get config.murv listen.port", "print one value"},
    {"get", "murv get --raw config.murv 'users[0].name'", "print a string as its bytes, for a script"},
    {"set", "murv set -i config.murv listen.port 8443", "change one value of a file, and keep every other byte"},
    {"set", "murv set config.murv 'users[0].name' Ann", "print the document with another text in it"},
    {"del", "murv del config.murv listen.port", "print the document without a member"},
    {"diff", "murv diff config.murv other.murv", "show what two documents say differently"},
    {"merge", "murv merge config.murv other.murv", "print the document with the changes that another one makes"},
    {"merge", "murv merge -i config.murv patch.json", "change a file by a merge patch"},
    {"stat", "murv stat config.murv", "count nodes, types, depth and comments"},
    {"convert", "murv convert config.murv --to binary -o config.murf", "write a binary file"},
    {"convert", "murv convert config.murf --to text", "turn it back into text"},
    {"info", "murv info config.murf", "show the header of a binary file"},
    {"unpack", "murv unpack -l sales.murv day.txt", "turn a file of records into a document"},
    {"unpack", "murv unpack -l sales.murv --csv sales day.txt", "make a table of the records of one kind"},
    {"pack", "murv unpack -l sales.murv day.txt | murv pack -l sales.murv -o again.txt", "there and back"},
    {"explain", "murv explain -l ach payments", "show what every byte of a file means"},
    {"explain", "murv explain -e '\"age\" = (BNF1) 0, \"name\" = (BCV1+1) \"\"' -x '2A 03 41 64 61'",
     "try a layout on a packet of five bytes"},
    {"layout", "murv layout sales.murv", "show offsets, lengths and rules of the parts"},
    {"layout", "murv layout --markdown ach", "the same as a table for a page"},
    {"picture", "murv picture --text ntp", "draw a packet in the terminal"},
    {"picture", "murv picture ntp > ntp.svg", "draw it for a page"},
    {"doc", "murv doc ntp > ntp.html", "write a page about a layout"},
    {"gen", "murv gen samples ach -o payments", "make a random file of payments"},
    {"gen samples", "murv gen samples sensor -n 1000 -d samples",
     "make 1000 packets, each in a file, with their trees"},
    {"gen samples", "murv gen samples sensor --damaged --lines", "make a packet that does not fit, and say why"},
    {"gen wireshark", "murv gen wireshark hsrp --udp --port 1985 -o hsrp.lua", "write a dissector"},
    {"layouts", "murv layouts", "list the layouts that -l finds by name"},
    {"help", "murv help fmt", "show the help of a verb"},
};

}  // namespace murv::tool
