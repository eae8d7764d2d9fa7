// SPDX-License-Identifier: MIT

// The recogniser on the Tesseract library, which is loaded when the first picture is to be read: it brings
// some eighty other libraries along, which would double the time that the program takes to start.

#include "capture/text/TextRecognizer.h"
#include "capture/text/TextRecognizerContrast.h"
#include "platform/base/Error.h"
#include "platform/base/ForeignCall.h"

#include <QLibrary>

#include <locale.h>
#include <tesseract/capi.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace pintalux {

namespace {

// In this order of preference. Those that are not installed are left out by the library itself.
constexpr const char* languages = "spa+eng+por+fra";

Error notInstalled()
{
    return {Error::ownDomain, 2,
        u"Para leer texto hay que instalar el paquete tesseract-ocr-spa y los que lo acompañan."_s};
}

/// The library's functions that are used here, by their own names.
class Library {
    std::unique_ptr<QLibrary> library = opened(); // before the functions, which are looked up in it

public:
    decltype(TessBaseAPICreate)* BaseAPICreate = function("TessBaseAPICreate");
    decltype(TessBaseAPIDelete)* BaseAPIDelete = function("TessBaseAPIDelete");
    decltype(TessBaseAPIInit2)* BaseAPIInit2 = function("TessBaseAPIInit2");
    decltype(TessBaseAPISetVariable)* BaseAPISetVariable = function("TessBaseAPISetVariable");
    decltype(TessBaseAPISetPageSegMode)* BaseAPISetPageSegMode = function("TessBaseAPISetPageSegMode");
    decltype(TessBaseAPISetImage)* BaseAPISetImage = function("TessBaseAPISetImage");
    decltype(TessBaseAPISetSourceResolution)* BaseAPISetSourceResolution
        = function("TessBaseAPISetSourceResolution");
    decltype(TessBaseAPIRecognize)* BaseAPIRecognize = function("TessBaseAPIRecognize");
    decltype(TessBaseAPIGetIterator)* BaseAPIGetIterator = function("TessBaseAPIGetIterator");
    decltype(TessBaseAPIClear)* BaseAPIClear = function("TessBaseAPIClear");
    decltype(TessBaseAPIEnd)* BaseAPIEnd = function("TessBaseAPIEnd");
    decltype(TessBaseAPIClearPersistentCache)* BaseAPIClearPersistentCache
        = function("TessBaseAPIClearPersistentCache");
    decltype(TessMonitorCreate)* MonitorCreate = function("TessMonitorCreate");
    decltype(TessMonitorDelete)* MonitorDelete = function("TessMonitorDelete");
    decltype(TessMonitorSetCancelFunc)* MonitorSetCancelFunc = function("TessMonitorSetCancelFunc");
    decltype(TessMonitorSetCancelThis)* MonitorSetCancelThis = function("TessMonitorSetCancelThis");
    decltype(TessResultIteratorDelete)* ResultIteratorDelete = function("TessResultIteratorDelete");
    decltype(TessResultIteratorNext)* ResultIteratorNext = function("TessResultIteratorNext");
    decltype(TessResultIteratorGetUTF8Text)* ResultIteratorGetUTF8Text
        = function("TessResultIteratorGetUTF8Text");
    decltype(TessResultIteratorConfidence)* ResultIteratorConfidence
        = function("TessResultIteratorConfidence");
    decltype(TessResultIteratorGetPageIteratorConst)* ResultIteratorGetPageIteratorConst
        = function("TessResultIteratorGetPageIteratorConst");
    decltype(TessPageIteratorBoundingBox)* PageIteratorBoundingBox = function("TessPageIteratorBoundingBox");
    decltype(TessDeleteText)* DeleteText = function("TessDeleteText");

    /// The library works with OpenMP threads that wait for each other longer than they work: one alone is
    /// four times as fast. The environment variable for it would have to be set before the process starts.
    void computeOnOneThread()
    {
        // Found among the libraries that came along; null where it was built without.
        if (const auto limit = reinterpret_cast<void (*)(int)>(library->resolve("omp_set_max_active_levels")))
            limit(0);
    }

    /// What the library beneath it has to say is not for the program's error output either.
    void keepQuiet()
    {
        constexpr int nothing = 6;
        if (const auto limit = reinterpret_cast<int (*)(int)>(library->resolve("setMsgSeverity")))
            limit(nothing);
    }

private:
    static std::unique_ptr<QLibrary> opened()
    {
        auto result = std::make_unique<QLibrary>(u"tesseract"_s, 5);
        result->setLoadHints(QLibrary::PreventUnloadHint);
        if (!result->load())
            throw notInstalled();
        return result;
    }

    /// Takes the type that it is assigned to.
    struct Function {
        QFunctionPointer address;
        template <typename Signature> operator Signature*() const
        {
            return reinterpret_cast<Signature*>(address);
        }
    };

    Function function(const char* name)
    {
        const auto address = library->resolve(name);
        if (!address)
            throw notInstalled();
        return {address};
    }
};

/// Numbers in the library's files have a point, whatever the person's locale.
class NumbersWithPoint {
public:
    NumbersWithPoint()
        : plain(newlocale(LC_NUMERIC_MASK, "C", duplocale(LC_GLOBAL_LOCALE)))
        , former(uselocale(plain))
    {
    }
    ~NumbersWithPoint()
    {
        uselocale(former);
        freelocale(plain);
    }
    NumbersWithPoint(const NumbersWithPoint&) = delete;
    NumbersWithPoint& operator=(const NumbersWithPoint&) = delete;

private:
    locale_t plain;
    locale_t former;
};

/// What icons, rules and pictures are taken for. `confidence` is in percent; words that are words have more
/// than 90, hard ones more than 40.
bool isNoise(const QString& word, float confidence)
{
    constexpr float leastOfWords = 20, leastOfSigns = 60;
    const bool isWord = std::ranges::any_of(word, [](QChar c) { return c.isLetterOrNumber(); });
    return confidence < (isWord ? leastOfWords : leastOfSigns) || word.isEmpty();
}

class TesseractRecognizer : public TextRecognizer {
public:
    QList<TextObservation> recognize(const QImage& image, const std::atomic<bool>& cancelled) override
    {
        if (image.isNull() || cancelled)
            return {};
        const NumbersWithPoint numbers;
        if (!engine)
            engine = std::make_unique<Engine>();
        // Each step takes part of a second on a large screen.
        if (cancelled)
            return {};
        const auto page = preparedForReading(image);
        return cancelled ? QList<TextObservation>() : engine->read(page, cancelled);
    }

private:
    class Engine {
    public:
        Engine()
            : api(lib.BaseAPICreate(), lib.BaseAPIDelete)
        {
            lib.computeOnOneThread();
            lib.keepQuiet();
            // What it has to say is not for the program's error output.
            lib.BaseAPISetVariable(api.get(), "debug_file", "/dev/null");
            if (!loadLanguages())
                throw notInstalled();
            lib.BaseAPISetPageSegMode(api.get(), tesseract::PSM_AUTO);
        }

        ~Engine()
        {
            // The library keeps dictionaries beyond the engines that use them.
            lib.BaseAPIEnd(api.get());
            lib.BaseAPIClearPersistentCache(api.get());
        }
        Engine(const Engine&) = delete;
        Engine& operator=(const Engine&) = delete;

        QList<TextObservation> read(const QImage& page, const std::atomic<bool>& cancelled)
        {
            lib.BaseAPISetImage(
                api.get(), page.constBits(), page.width(), page.height(), 1, int(page.bytesPerLine()));
            lib.BaseAPISetSourceResolution(api.get(), typicalResolution);
            recognizeUnless(cancelled);
            auto words = wordsOf(page.size());
            lib.BaseAPIClear(api.get()); // the picture and what was made of it
            return words;
        }

    private:
        // Text of an ordinary size at twice a screen's density, which is what pictures are brought to.
        static constexpr int typicalResolution = 192;

        bool loadLanguages()
        {
            const ForeignCall call;
            return lib.BaseAPIInit2(api.get(), nullptr, languages, tesseract::OEM_LSTM_ONLY) == 0;
        }

        // Looking for the lines of a large page takes seconds before it asks whether it is cancelled.
        void recognizeUnless(const std::atomic<bool>& cancelled)
        {
            const ForeignCall call;
            const std::unique_ptr<ETEXT_DESC, decltype(lib.MonitorDelete)> monitor(
                lib.MonitorCreate(), lib.MonitorDelete);
            lib.MonitorSetCancelThis(monitor.get(), const_cast<std::atomic<bool>*>(&cancelled));
            lib.MonitorSetCancelFunc(monitor.get(),
                [](void* flag, int) { return static_cast<const std::atomic<bool>*>(flag)->load(); });
            lib.BaseAPIRecognize(api.get(), monitor.get());
        }

        QList<TextObservation> wordsOf(QSize size)
        {
            QList<TextObservation> words;
            const std::unique_ptr<TessResultIterator, decltype(lib.ResultIteratorDelete)> position(
                lib.BaseAPIGetIterator(api.get()), lib.ResultIteratorDelete);
            if (!position)
                return words;
            const auto* place = lib.ResultIteratorGetPageIteratorConst(position.get());
            do {
                const std::unique_ptr<char, decltype(lib.DeleteText)> text(
                    lib.ResultIteratorGetUTF8Text(position.get(), tesseract::RIL_WORD), lib.DeleteText);
                if (!text)
                    continue;
                int left = 0, right = 0, top = 0, bottom = 0, unused = 0;
                lib.PageIteratorBoundingBox(place, tesseract::RIL_WORD, &left, &unused, &right, &unused);
                lib.PageIteratorBoundingBox(place, tesseract::RIL_TEXTLINE, &unused, &top, &unused, &bottom);
                const auto word = QString::fromUtf8(text.get()).trimmed();
                if (!isNoise(word, lib.ResultIteratorConfidence(position.get(), tesseract::RIL_WORD)))
                    words.append({word,
                        QRectF(double(left) / size.width(), double(top) / size.height(),
                            double(right - left) / size.width(), double(bottom - top) / size.height())});
            } while (lib.ResultIteratorNext(position.get(), tesseract::RIL_WORD));
            return words;
        }

        Library lib;
        std::unique_ptr<TessBaseAPI, decltype(&TessBaseAPIDelete)> api;
    };

    std::unique_ptr<Engine> engine; ///< loading its languages takes half a second
};

} // namespace

std::unique_ptr<TextRecognizer> makeTextRecognizer() { return std::make_unique<TesseractRecognizer>(); }

} // namespace pintalux
