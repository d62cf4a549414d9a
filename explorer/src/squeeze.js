// squeeze.js - the browser's own compression, for links and for the library inside the page.

async function through(bytes, stream) {
  const response = new Response(new Blob([bytes]).stream().pipeThrough(stream));
  return new Uint8Array(await response.arrayBuffer());
}

export const deflate = (bytes) => through(bytes, new CompressionStream("deflate-raw"));
export const inflate = (bytes) => through(bytes, new DecompressionStream("deflate-raw"));
