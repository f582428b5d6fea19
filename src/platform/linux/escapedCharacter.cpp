#include "escapedCharacter.h"

QChar escapedCharacter(QChar letter)
{
    switch (letter.unicode()) {
    case 'a':
        return u'\a';
    case 'b':
        return u'\b';
    case 'f':
        return u'\f';
    case 'n':
        return u'\n';
    case 'r':
        return u'\r';
    case 't':
        return u'\t';
    case 'v':
        return u'\v';
    default:
        return letter;
    }
}
