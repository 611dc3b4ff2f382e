// Reads printed pages back from an enhanced metafile: the groups of records between the public
// begin-group and end-group comments, with the texts and the pictures drawn in each.
#pragma once
#include <windows.h>
#include <string>
#include <vector>

struct PrintedText {
    std::wstring text;
    POINT at;  // reference point of the text output
    bool bold;
};

struct PrintedPicture {
    RECT at;  // destination on the page
    int width = 0, height = 0;
    std::vector<COLORREF> pixels;  // top-down
    COLORREF pixel(int x, int y) const { return pixels.at(static_cast<size_t>(y) * width + x); }
};

struct PrintedPage {
    std::wstring description;
    RECT bounds = {};
    std::vector<PrintedText> texts;
    std::vector<PrintedPicture> pictures;
    bool ended = false;
};

struct PrintedDocument {
    std::vector<PrintedPage> pages;
    int drawingOutsidePages = 0;  // texts and pictures outside any page
    // Weights of the fonts by object table index, and the one selected.
    std::vector<LONG> fontWeights = std::vector<LONG>(256);
    LONG weight = 0;
};

inline PrintedDocument ReadPrintedPages(HENHMETAFILE metafile) {
    struct Reader {
        static int CALLBACK visit(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM data) {
            auto* document = reinterpret_cast<PrintedDocument*>(data);
            PrintedPage* page = document->pages.empty() || document->pages.back().ended
                                    ? nullptr : &document->pages.back();
            auto* bytes = reinterpret_cast<const BYTE*>(record);
            switch (record->iType) {
            case EMR_EXTCREATEFONTINDIRECTW: {
                auto* font = reinterpret_cast<const EMREXTCREATEFONTINDIRECTW*>(record);
                if (font->ihFont < document->fontWeights.size())
                    document->fontWeights[font->ihFont] = font->elfw.elfLogFont.lfWeight;
                break;
            }
            case EMR_SELECTOBJECT: {
                DWORD object = reinterpret_cast<const EMRSELECTOBJECT*>(record)->ihObject;
                if (object < document->fontWeights.size() && document->fontWeights[object])
                    document->weight = document->fontWeights[object];
                break;
            }
            case EMR_GDICOMMENT: {
                auto* comment = reinterpret_cast<const EMRGDICOMMENT*>(record);
                auto* words = reinterpret_cast<const DWORD*>(comment->Data);
                if (comment->cbData < 8 || words[0] != GDICOMMENT_IDENTIFIER) break;
                if (words[1] == GDICOMMENT_BEGINGROUP) {
                    PrintedPage next;
                    auto* bounds = reinterpret_cast<const RECTL*>(words + 2);
                    next.bounds = {bounds->left, bounds->top, bounds->right, bounds->bottom};
                    DWORD length = words[6];
                    next.description.assign(reinterpret_cast<const wchar_t*>(words + 7), length ? length - 1 : 0);
                    document->pages.push_back(next);
                } else if (words[1] == GDICOMMENT_ENDGROUP && page) {
                    page->ended = true;
                }
                break;
            }
            case EMR_EXTTEXTOUTW: {
                auto* text = reinterpret_cast<const EMREXTTEXTOUTW*>(record);
                PrintedText printed;
                printed.text.assign(reinterpret_cast<const wchar_t*>(bytes + text->emrtext.offString),
                                    text->emrtext.nChars);
                printed.at = {text->emrtext.ptlReference.x, text->emrtext.ptlReference.y};
                printed.bold = document->weight >= FW_BOLD;
                if (page) page->texts.push_back(printed);
                else ++document->drawingOutsidePages;
                break;
            }
            case EMR_STRETCHDIBITS: {
                auto* blit = reinterpret_cast<const EMRSTRETCHDIBITS*>(record);
                auto* info = reinterpret_cast<const BITMAPINFOHEADER*>(bytes + blit->offBmiSrc);
                PrintedPicture picture;
                picture.at = {blit->xDest, blit->yDest, blit->xDest + blit->cxDest, blit->yDest + blit->cyDest};
                picture.width = info->biWidth;
                picture.height = info->biHeight < 0 ? -info->biHeight : info->biHeight;
                if (info->biBitCount == 24 || info->biBitCount == 32) {
                    int step = info->biBitCount / 8;
                    int stride = (picture.width * step + 3) & ~3;
                    const BYTE* bits = bytes + blit->offBitsSrc;
                    for (int y = 0; y < picture.height; ++y) {
                        int row = info->biHeight > 0 ? picture.height - 1 - y : y;
                        for (int x = 0; x < picture.width; ++x) {
                            const BYTE* p = bits + row * stride + x * step;
                            picture.pixels.push_back(RGB(p[2], p[1], p[0]));
                        }
                    }
                }
                if (page) page->pictures.push_back(picture);
                else ++document->drawingOutsidePages;
                break;
            }
            }
            return 1;
        }
    };
    PrintedDocument document;
    EnumEnhMetaFile(nullptr, metafile, Reader::visit, &document, nullptr);
    return document;
}
